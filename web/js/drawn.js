// SPDX-License-Identifier: MIT
// A part of a dialog that the program draws and that takes the pointer and the keys itself.
import {faceOf} from './controls.js';

/** @type {{[key: string]: string}} */
const kKeys = {ArrowLeft: 'left', ArrowRight: 'right', ArrowUp: 'up', ArrowDown: 'down', ' ': 'space', Delete: 'delete', Insert: 'insert', ContextMenu: 'menu'};

/**
 * @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog @param {number} id
 * @param {string} name @param {{width?: number, height?: number, className?: string}} [options]
 */
export function drawnControl(model, dialog, id, name, options = {}) {
  const canvas = faceOf(model, dialog, id, {className: options.className || 'drawn', ...options});
  canvas.tabIndex = 0;
  canvas.setAttribute('role', 'application');
  canvas.setAttribute('aria-label', name);
  const post = (/** @type {string} */ what, /** @type {MouseEvent} */ event) => {
    const box = canvas.getBoundingClientRect();
    model.post({op: 'mouse', id, what, x: Math.round((event.clientX - box.left) * canvas.width / box.width),
      y: Math.round((event.clientY - box.top) * canvas.height / box.height), shift: event.shiftKey}, dialog);
  };
  let down = false;
  canvas.addEventListener('pointerdown', event => {
    if (event.button !== 0) return;
    down = true;
    canvas.setPointerCapture(event.pointerId);
    post('down', event);
  });
  canvas.addEventListener('pointermove', event => { if (down) post('move', event); });
  canvas.addEventListener('pointerup', event => {
    if (down) post('up', event);
    down = false;
  });
  canvas.addEventListener('pointercancel', () => {
    if (down) model.post({op: 'capture-lost'}, dialog);
    down = false;
  });
  canvas.addEventListener('dblclick', event => {
    post('double', event);
    post('up', event);
  });
  canvas.addEventListener('keydown', event => {
    if (!(event.key in kKeys)) return;
    event.preventDefault();
    model.post({op: 'key', id, key: kKeys[event.key], shift: event.shiftKey}, dialog);
  });
  return canvas;
}
