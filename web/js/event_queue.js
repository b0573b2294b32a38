// SPDX-License-Identifier: MIT
// Events that wait for the line to the program.

/**
 * Adds an event. Moves of the pointer and steps of one slider that wait are replaced by the next.
 * @param {{[key: string]: any}[]} queue @param {{[key: string]: any}} event
 */
export function queueUp(queue, event) {
  const last = queue[queue.length - 1];
  const follows = last && last.op === event.op && last.id === event.id && last.level === event.level &&
      (event.op === 'type' || (event.op === 'mouse' && event.what === 'move' && last.what === 'move') ||
       (event.op === 'colour' && last.index === event.index) || (event.op === 'face' && last.item === event.item));
  if (follows) queue[queue.length - 1] = event;
  else queue.push(event);
}
