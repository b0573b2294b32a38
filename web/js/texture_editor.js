// SPDX-License-Identifier: MIT
// The texture editor: the library on one side, the picture, and the numbers of the chosen kind.
import {colourRow, comboRow, faceOf, numberRow} from './controls.js';
import {drawnControl} from './drawn.js';
import {icon, make} from './dom.js';

const kPreview = 101, kList = 102, kGroup = 103, kAdd = 104, kDelete = 105, kTypes = 106, kShow = 107;
const kFirst = 501, kLast = 532, kRed = 525, kBlue = 527;

/** @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog */
export function libraryButtons(model, dialog, /** @type {number} */ add, /** @type {number} */ remove, /** @type {string} */ what) {
  const click = (/** @type {number} */ id, /** @type {boolean} */ group) => (/** @type {MouseEvent} */ event) => model.post({op: 'click', id, shift: group || event.shiftKey}, dialog);
  return make('div', {class: 'library-buttons'},
    make('button', {class: 'quiet', onclick: click(add, false)}, icon('plus'), `Add ${what}`),
    make('button', {class: 'quiet', onclick: click(remove, false)}, icon('minus'), 'Delete'),
    make('button', {class: 'quiet', onclick: click(add, true)}, 'New group'),
    make('button', {class: 'quiet', onclick: click(remove, true)}, 'Delete group'));
}

/** A list of names. @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog @param {number} id @param {string} name */
export function nameList(model, dialog, id, name) {
  const list = make('select', {size: 9, class: 'names', 'aria-label': name,
    onchange: () => model.post({op: 'choose', id, index: list.selectedIndex}, dialog),
    ondblclick: () => { if (list.selectedIndex >= 0) model.post({op: 'double', id, index: list.selectedIndex}, dialog); },
    oncontextmenu: (/** @type {MouseEvent} */ event) => {
      event.preventDefault();
      if (list.selectedIndex >= 0) model.post({op: 'menu', id, index: list.selectedIndex}, dialog);
    },
    onkeydown: (/** @type {KeyboardEvent} */ event) => { if (event.key === 'Delete') model.post({op: 'key', id, key: 'delete'}, dialog); }});
  /** @type {string[]|undefined} */
  let items;
  dialog.watch(id, facts => {
    if (items !== facts.items) {
      items = facts.items;
      list.replaceChildren(...(items || []).map(text => make('option', {}, text)));
    }
    list.selectedIndex = facts.selection ?? -1;
  });
  return list;
}

/** @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog */
export function buildTexture(model, dialog) {
  /** @type {HTMLElement[]} */
  const rows = [];
  for (let id = kFirst; id <= kLast; id++) {
    const facts = dialog.get(id);
    if (!facts || (id >= kRed && id <= kBlue)) continue;
    const row = facts.kind === 'colour' ? colourRow(model, dialog, id) : facts.kind === 'combo' ? comboRow(model, dialog, id) : numberRow(model, dialog, id);
    rows.push(row);
  }
  const curves = make('div', {class: 'curves'}, ...['Red', 'Green', 'Blue'].map((name, i) => {
    const figure = make('figure', {}, make('figcaption', {}, name), drawnControl(model, dialog, kRed + i, `${name} curve; left and right choose a point, up and down move it`, {width: 180, height: 120, className: 'curve'}));
    dialog.watch(kRed + i, facts => { figure.hidden = !facts.visible; });
    return figure;
  }));
  return make('div', {class: 'layer-body texture'},
    make('div', {class: 'library'}, comboRow(model, dialog, kGroup), nameList(model, dialog, kList, 'Textures'), libraryButtons(model, dialog, kAdd, kDelete, 'this')),
    make('div', {class: 'texture-picture'}, faceOf(model, dialog, kPreview, {className: 'texture-face own-size', width: dialog.get(kPreview).place[2], height: dialog.get(kPreview).place[3]}),
      make('button', {onclick: () => model.post({op: 'click', id: kShow}, dialog)}, 'See it in use')),
    make('div', {class: 'rows numbers'}, comboRow(model, dialog, kTypes), curves, ...rows));
}
