// SPDX-License-Identifier: MIT
// A menu under a button, by mouse and by keys.
import {icon, make} from './dom.js';

/**
 * @typedef {{text?: string, note?: string, keys?: string, checked?: boolean, toggle?: boolean, heading?: string, line?: boolean, action?: () => void}} Item
 */

/** @type {(() => void)|null} */
let closeOpen = null;

/**
 * @param {HTMLElement|{x: number, y: number}} at  below a button, or at a place of the window
 * @param {Item[]} items
 * @param {() => void} [cancelled]
 */
export function openMenu(at, items, cancelled = () => {}) {
  if (closeOpen) {
    const own = at instanceof HTMLElement && at.getAttribute('aria-expanded') === 'true';
    closeOpen();
    if (own) return;
  }
  const before = /** @type {HTMLElement|null} */ (document.activeElement);
  const menu = make('div', {class: 'menu', role: 'menu', tabindex: '-1'}, ...items.map(item => {
    if (item.line) return make('hr', {});
    if (item.heading) return make('p', {class: 'menu-heading', role: 'presentation'}, item.heading);
    const role = item.checked === undefined ? 'menuitem' : item.toggle ? 'menuitemcheckbox' : 'menuitemradio';
    return make('button', {role, tabindex: '-1', ...(item.checked === undefined ? {} : {'aria-checked': String(item.checked)}),
      onclick: () => { close(); item.action?.(); }},
    item.checked || item.toggle ? icon(item.checked ? 'check' : 'box') : null, make('span', {class: 'menu-text'}, item.text || ''),
    item.note ? make('small', {}, item.note) : null, item.keys ? make('kbd', {}, item.keys) : null);
  }));
  const host = before?.closest('dialog') || document.body;
  host.append(menu);
  const box = at instanceof HTMLElement ? at.getBoundingClientRect() : {left: at.x, right: at.x, bottom: at.y, top: at.y};
  const width = menu.offsetWidth, height = menu.offsetHeight;
  const left = Math.max(Math.min(at instanceof HTMLElement && box.left + width > innerWidth - 8 ? box.right - width : box.left, innerWidth - width - 8), 8);
  const top = box.bottom + height + 12 > innerHeight && box.top > height + 12 ? box.top - height - 6 : Math.min(box.bottom + 6, innerHeight - height - 8);
  menu.style.left = `${left}px`;
  menu.style.top = `${Math.max(top, 8)}px`;
  if (at instanceof HTMLElement) at.setAttribute('aria-expanded', 'true');
  const buttons = [...menu.querySelectorAll('button')];
  (buttons.find(button => button.getAttribute('aria-checked') === 'true') || buttons[0])?.focus();
  const outside = (/** @type {Event} */ event) => {
    if (menu.contains(/** @type {Node} */ (event.target)) || (at instanceof HTMLElement && at.contains(/** @type {Node} */ (event.target)))) return;
    close();
    cancelled();
  };
  const key = (/** @type {KeyboardEvent} */ event) => {
    const focus = buttons.indexOf(/** @type {any} */ (document.activeElement));
    const to = {ArrowDown: focus + 1, ArrowUp: focus - 1, Home: 0, End: buttons.length - 1}[event.key];
    if (to !== undefined) buttons[(to + buttons.length) % buttons.length].focus();
    else if (event.key === 'Escape' || event.key === 'Tab') {
      close();
      cancelled();
    } else return;
    event.preventDefault();
    event.stopPropagation();
  };
  const close = () => {
    menu.remove();
    removeEventListener('pointerdown', outside, true);
    if (at instanceof HTMLElement) at.setAttribute('aria-expanded', 'false');
    closeOpen = null;
    before?.focus();
  };
  closeOpen = close;
  menu.addEventListener('keydown', key);
  addEventListener('pointerdown', outside, true);
}

/** Closes a menu whose question has been answered elsewhere. */
export function closeMenu() {
  closeOpen?.();
}
