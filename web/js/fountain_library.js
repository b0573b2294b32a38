// SPDX-License-Identifier: MIT
// The library of fountains.
import {make} from './dom.js';
import {pictureList} from './picture_list.js';

const kList = 101, kUse = 102, kUp = 103, kDown = 104, kDelete = 105;

/** @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog */
export function buildFountainLibrary(model, dialog) {
  const {list, refresh} = pictureList(model, dialog, kList, 'Fountain', {width: 360, height: 34, item: 'fountain-item'});
  const button = (/** @type {number} */ id) => {
    const moves = id !== kUse;
    const element = make('button', {class: id === kUse ? '' : 'quiet', onclick: () => {
      model.post({op: 'click', id}, dialog);
      if (moves) setTimeout(refresh, 120);
    }}, dialog.get(id).label);
    dialog.watch(id, facts => {
      if (!facts.enabled && document.activeElement === element) list.focus();
      element.disabled = !facts.enabled;
    });
    return element;
  };
  return make('div', {class: 'layer-body fountains'}, list, make('div', {class: 'library-buttons'}, ...[kUse, kUp, kDown, kDelete].map(button)));
}
