// SPDX-License-Identifier: MIT
// A sentence that comes and goes.
import {byId, make} from './dom.js';

/** @param {string} text @param {'info'|'error'} [kind] @param {{text: string, action: () => void}[]} [buttons] */
export function toast(text, kind = 'info', buttons = []) {
  const element = make('div', {class: `toast ${kind}`}, make('p', {}, text),
    ...buttons.map(button => make('button', {onclick: () => { element.remove(); button.action(); }}, button.text)));
  byId('toasts').append(element);
  if (!buttons.length) setTimeout(() => element.remove(), kind === 'error' ? 9000 : 4500);
  return element;
}
