// SPDX-License-Identifier: MIT
// The line to the program, opened while the rest of the page is still on its way.
import {Connection} from './connection.js';

/** @typedef {{receive: import('./connection.js').Receive, changed: (state: 'live'|'lost'|'ended'|'refused', words?: string) => void}} Listener */

/** @type {Listener|undefined} */
let listener;
/** @type {((to: Listener) => void)[]} what came before anybody listened */
const early = [];
const hand = (/** @type {(to: Listener) => void} */ deliver) => { if (listener) deliver(listener); else early.push(deliver); };

export const connection = new Connection(
  (message, payload) => hand(to => to.receive(message, payload)),
  (state, words) => hand(to => to.changed(state, words)));
connection.start();

/** @param {Listener} to  takes everything from now on, and what came before */
export function listen(to) {
  listener = to;
  for (const deliver of early.splice(0)) deliver(to);
}
