// SPDX-License-Identifier: MIT
// Small dialogs: what the program is, a marker's position, a texture in use.
import {faceOf, numberRow} from './controls.js';
import {make} from './dom.js';

/** @typedef {import('./model.js').Model} Model */
/** @typedef {import('./model.js').Dialog} Dialog */

const kPicture = 20, kText = 0xFFFF;

/** @param {Model} model @param {Dialog} dialog */
export function buildAbout(model, dialog) {
  const lines = (dialog.get(kText).text || '').split('\n');
  return make('div', {class: 'layer-body about-body'}, faceOf(model, dialog, kPicture, {className: 'about-face'}), ...lines.map(line => make('p', {}, line)));
}

/** @param {Model} model @param {Dialog} dialog */
export function buildPosition(model, dialog) {
  return make('div', {class: 'layer-body'}, numberRow(model, dialog, 100));
}

/** @param {Model} model @param {Dialog} dialog */
export function buildTexturePreview(model, dialog) {
  const figure = (/** @type {string} */ name, /** @type {number} */ id, /** @type {number} */ height) =>
    make('figure', {}, make('figcaption', {}, name), faceOf(model, dialog, id, {width: 452, height}));
  return make('div', {class: 'layer-body'}, figure('As a background', 101, 180), figure('As the fill of a text', 102, 130));
}
