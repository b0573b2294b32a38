// SPDX-License-Identifier: MIT
// A list whose items the program draws; their pictures are asked for as they come into view.
import {faceOf} from './controls.js';
import {make} from './dom.js';

/**
 * @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog @param {number} id
 * @param {string} name @param {{width: number, height: number, item: string}} options
 */
export function pictureList(model, dialog, id, name, options) {
  const list = make('div', {class: `pictures ${options.item}s`, role: 'listbox', 'aria-label': name, tabindex: '0'});
  const seen = new IntersectionObserver(entries => {
    for (const entry of entries) {
      if (!entry.isIntersecting || entry.target.firstChild) continue;
      const index = Number(/** @type {HTMLElement} */ (entry.target).dataset.index);
      entry.target.append(faceOf(model, dialog, id, {item: index, width: options.width, height: options.height}));
    }
  }, {root: list, rootMargin: '120px'});
  const choose = (/** @type {number} */ index) => model.post({op: 'choose', id, index}, dialog);
  const selected = () => dialog.get(id).selection ?? -1;
  const indexOf = (/** @type {Event} */ event) => Number(/** @type {HTMLElement} */ (event.target).closest('.item')?.getAttribute('data-index') ?? -1);
  list.addEventListener('click', (/** @type {Event} */ event) => { if (indexOf(event) >= 0) choose(indexOf(event)); });
  list.addEventListener('dblclick', (/** @type {Event} */ event) => { if (indexOf(event) >= 0) model.post({op: 'double', id, index: indexOf(event)}, dialog); });
  list.addEventListener('contextmenu', (/** @type {Event} */ event) => {
    event.preventDefault();
    if (indexOf(event) >= 0) model.post({op: 'menu', id, index: indexOf(event)}, dialog);
  });
  list.addEventListener('keydown', (/** @type {KeyboardEvent} */ event) => {
    const count = (dialog.get(id).items || []).length;
    const across = Math.max(1, Math.floor((list.clientWidth - 8) / ((list.firstElementChild?.clientWidth || 60) + 6)));
    const steps = {ArrowLeft: -1, ArrowRight: 1, ArrowUp: -across, ArrowDown: across, Home: -count, End: count}[event.key];
    if (steps !== undefined) choose(Math.min(Math.max(selected() + steps, 0), count - 1));
    else if (event.key === 'Delete') model.post({op: 'key', id, key: 'delete'}, dialog);
    else if (event.key === 'Enter') model.post({op: 'double', id, index: selected()}, dialog);
    else return;
    event.preventDefault();
  });
  let shown = '';
  dialog.watch(id, facts => {
    const items = facts.items || [];
    const now = `${items.length}/${facts.place}/${facts.selection}`;
    const grown = list.children.length !== items.length || shown !== now;
    if (grown && list.children.length !== items.length) {
      seen.disconnect();
      list.replaceChildren(...items.map((_, index) => {
        const item = make('div', {class: `item ${options.item}`, role: 'option', id: `item-${id}-${index}`, 'data-index': index, 'aria-label': `${name} ${index + 1}`});
        seen.observe(item);
        return item;
      }));
    }
    shown = now;
    [...list.children].forEach((item, index) => item.setAttribute('aria-selected', String(index === facts.selection)));
    if (facts.selection !== undefined && facts.selection >= 0) {
      list.setAttribute('aria-activedescendant', `item-${id}-${facts.selection}`);
      list.children[facts.selection]?.scrollIntoView({block: 'nearest'});
    } else list.removeAttribute('aria-activedescendant');
  });
  /** The pictures are no longer those of their places. */
  const refresh = () => {
    seen.disconnect();
    for (const item of list.children) {
      item.replaceChildren();
      seen.observe(item);
    }
  };
  return {list, refresh};
}
