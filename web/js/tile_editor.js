// SPDX-License-Identifier: MIT
// The tile editor: small pictures in groups, and how the chosen one repeats.
import {comboRow, faceOf} from './controls.js';
import {libraryButtons} from './texture_editor.js';
import {make} from './dom.js';
import {pictureList} from './picture_list.js';

const kPreview = 101, kList = 102, kAdd = 103, kDelete = 104, kSize = 105, kGroup = 108, kCell = 56;

/** @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog */
export function buildTiles(model, dialog) {
  const size = make('p', {class: 'about'});
  dialog.watch(kSize, facts => { size.textContent = facts.text || ''; });
  const {list, refresh} = pictureList(model, dialog, kList, 'Tile', {width: kCell, height: kCell, item: 'tile-item'});
  let group = dialog.get(kGroup).selection, count = (dialog.get(kList).items || []).length;
  dialog.listeners.add(() => {
    const items = (dialog.get(kList).items || []).length;
    if (dialog.get(kGroup).selection !== group || items !== count) refresh();
    group = dialog.get(kGroup).selection;
    count = items;
  });
  return make('div', {class: 'layer-body tiles'},
    make('div', {class: 'library'}, comboRow(model, dialog, kGroup), list, libraryButtons(model, dialog, kAdd, kDelete, 'a picture…')),
    make('div', {class: 'texture-picture'}, faceOf(model, dialog, kPreview, {className: 'texture-face'}), size));
}
