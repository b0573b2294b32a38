// SPDX-License-Identifier: MIT
// Small helpers to make elements.

/**
 * @param {string} tag  "button.icon" makes a button of that class
 * @param {{[name: string]: any}} [attributes]  on... are listeners, the rest attributes; null leaves one out
 * @param {...(Node|string|null|undefined)} children
 * @returns {any}
 */
export function make(tag, attributes = {}, ...children) {
  const [name, ...classes] = tag.split('.');
  const element = document.createElement(name);
  if (classes.length) element.className = classes.join(' ');
  for (const [key, value] of Object.entries(attributes)) {
    if (value === null || value === undefined || value === false) continue;
    if (key.startsWith('on')) element.addEventListener(key.slice(2), value);
    else element.setAttribute(key, value === true ? '' : String(value));
  }
  element.append(...children.filter(child => child !== null && child !== undefined).map(child => /** @type {Node|string} */ (child)));
  return element;
}

/** @type {{[name: string]: string}} */
const kPaths = {
  play: 'M7 5v14l12-7z',
  pause: 'M7 5h4v14H7zM14 5h4v14h-4z',
  back: 'M17 5 8 12l9 7zM5 5h2.4v14H5z',
  forward: 'M7 5l9 7-9 7zM16.6 5H19v14h-2.4z',
  undo: 'M9 4 3.5 9.5 9 15v-4h5a4 4 0 0 1 0 8h-4v2h4a6 6 0 0 0 0-12H9z',
  redo: 'M15 4l5.5 5.5L15 15v-4h-5a4 4 0 0 0 0 8h4v2h-4a6 6 0 0 1 0-12h5z',
  down: 'M6 9l6 6 6-6z',
  plus: 'M11 5h2v6h6v2h-6v6h-2v-6H5v-2h6z',
  minus: 'M5 11h14v2H5z',
  dice: 'M5 3h14a2 2 0 0 1 2 2v14a2 2 0 0 1-2 2H5a2 2 0 0 1-2-2V5a2 2 0 0 1 2-2zm2.8 3.2a1.6 1.6 0 1 0 0 3.2 1.6 1.6 0 0 0 0-3.2zm8.4 0a1.6 1.6 0 1 0 0 3.2 1.6 1.6 0 0 0 0-3.2zM12 10.4a1.6 1.6 0 1 0 0 3.2 1.6 1.6 0 0 0 0-3.2zm-4.2 4.2a1.6 1.6 0 1 0 0 3.2 1.6 1.6 0 0 0 0-3.2zm8.4 0a1.6 1.6 0 1 0 0 3.2 1.6 1.6 0 0 0 0-3.2z',
  close: 'M6.4 5 12 10.6 17.6 5 19 6.4 13.4 12l5.6 5.6-1.4 1.4-5.6-5.6L6.4 19 5 17.6 10.6 12 5 6.4z',
  check: 'M9.5 17.5 4 12l1.6-1.6 3.9 3.9 8.9-8.9L20 7z',
  box: 'M5 3h14a2 2 0 0 1 2 2v14a2 2 0 0 1-2 2H5a2 2 0 0 1-2-2V5a2 2 0 0 1 2-2zm0 2v14h14V5z',
  copy: 'M8 3h10a2 2 0 0 1 2 2v11h-2V5H8zM4 8a2 2 0 0 1 2-2h8a2 2 0 0 1 2 2v11a2 2 0 0 1-2 2H6a2 2 0 0 1-2-2z',
  arrow: 'M12 4l7 7-1.5 1.5L13 8v12h-2V8l-4.5 4.5L5 11z',
};

/** @param {string} name @param {number} [turn] degrees */
export function icon(name, turn = 0) {
  const svg = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
  svg.setAttribute('viewBox', '0 0 24 24');
  svg.setAttribute('aria-hidden', 'true');
  svg.classList.add('glyph');
  const path = document.createElementNS('http://www.w3.org/2000/svg', 'path');
  path.setAttribute('d', kPaths[name]);
  if (turn) path.setAttribute('transform', `rotate(${turn} 12 12)`);
  svg.append(path);
  return svg;
}

/** @param {string} id @returns {any} */
export const byId = id => document.getElementById(id);

/** @param {number} value @param {number} low @param {number} high */
export const clamp = (value, low, high) => Math.min(Math.max(value, low), high);

/** @param {number} bytes */
export function sizeText(bytes) {
  if (bytes < 1000) return `${bytes} bytes`;
  return bytes < 999500 ? `${Math.round(bytes / 1000)} KB` : `${(bytes / 1e6).toFixed(2)} MB`;
}

/** What the program says in the middle of a line, on its own. @param {string} text */
export const sentence = text => text.charAt(0).toUpperCase() + text.slice(1);

/**
 * Makes the buttons of a grid one stop of Tab; arrows go from one to the next.
 * @param {HTMLElement} group @param {(index: number) => void} [moved]
 */
export function roam(group, moved = () => {}) {
  const buttons = () => /** @type {HTMLElement[]} */ ([...group.children]);
  const stopAt = (/** @type {EventTarget|null} */ target) => { for (const each of buttons()) each.tabIndex = each === target ? 0 : -1; };
  stopAt(group.firstElementChild);
  group.addEventListener('focusin', event => stopAt(event.target));
  group.addEventListener('keydown', event => {
    const {gridAutoFlow, gridTemplateColumns, gridTemplateRows} = getComputedStyle(group), all = buttons();
    const byColumn = gridAutoFlow.startsWith('column'), line = (byColumn ? gridTemplateRows : gridTemplateColumns).split(' ').length;
    const [across, down] = byColumn ? [line, 1] : [1, line];
    const at = all.findIndex(each => each === event.target);
    /** @type {{[key: string]: number}} */
    const places = {ArrowLeft: at - across, ArrowRight: at + across, ArrowUp: at - down, ArrowDown: at + down, Home: 0, End: all.length - 1};
    if (!(event.key in places) || at < 0) return;
    event.preventDefault();
    const to = places[event.key];
    if (!all[to] || to === at) return;
    all[to].focus();
    moved(to);
  });
}

let made = 0;
/** An id that nothing else on the page has. */
export const freshId = () => `x${++made}`;

const kEcho = 700;  // milliseconds for which typing takes precedence over echoes

/**
 * Keeps a field's value, but never under the fingers of who types in it.
 * @param {HTMLInputElement|HTMLTextAreaElement} field
 */
export function echo(field) {
  let typed = -Infinity, waiting = '', timer = 0;
  field.addEventListener('input', () => { typed = performance.now(); });
  const set = () => { if (field.value !== waiting) field.value = waiting; };
  field.addEventListener('blur', () => setTimeout(set, 60));
  return (/** @type {string} */ value) => {
    waiting = value;
    clearTimeout(timer);
    const own = document.activeElement === field && performance.now() - typed < kEcho;
    if (own) timer = window.setTimeout(set, kEcho);
    else set();
  };
}

/** The sentences stand in the uppermost layer, since what is below one is dimmed and silent. @param {Element} [leaving]  a layer that closes */
export function raiseToasts(leaving) {
  const open = [...document.querySelectorAll('dialog[open]')].filter(layer => layer !== leaving);
  const host = open[open.length - 1] || document.body;
  if (byId('toasts').parentElement !== host) host.append(byId('toasts'));
}

/** Takes a layer away, but not the sentences in it; the focus goes back to where it was. @param {HTMLDialogElement} layer */
export function removeLayer(layer) {
  layer.close();
  raiseToasts(layer);
  layer.remove();
}

/** A sentence that comes and goes. @param {string} text @param {'info'|'error'} [kind] @param {{text: string, action: () => void}[]} [buttons] */
export function toast(text, kind = 'info', buttons = []) {
  const element = make('div', {class: `toast ${kind}`}, make('p', {}, text),
    ...buttons.map(button => make('button', {onclick: () => { element.remove(); button.action(); }}, button.text)));
  raiseToasts();
  byId('toasts').append(element);
  if (!buttons.length) setTimeout(() => element.remove(), kind === 'error' ? 9000 : 4500);
  return element;
}
