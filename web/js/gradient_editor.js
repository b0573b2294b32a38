// SPDX-License-Identifier: MIT
// The gradient editor: the shape, the picture that is dragged, and two colours or a fountain.
import {colourRow, numberRow} from './controls.js';
import {drawnControl} from './drawn.js';
import {freshId, make} from './dom.js';
import {FountainBar} from './fountain_bar.js';

const kShapes = [101, 104, 102, 103];
const kPreview = 105, kHint = 121, kMidpoint = 110, kRotation = 111, kEdgePad = 112, kCentreX = 113, kCentreY = 114;
const kStart = 107, kEnd = 106, kTwo = 118, kMany = 119, kFountain = 120;

/** @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog */
export function buildGradient(model, dialog) {
  const hint = make('p', {class: 'about'});
  dialog.watch(kHint, facts => { hint.textContent = facts.text || ''; });
  const group = freshId();
  const shapes = make('div', {class: 'segments', role: 'radiogroup', 'aria-label': 'Shape'}, ...kShapes.map(id => {
    const input = make('input', {type: 'radio', name: group, onchange: () => model.post({op: 'key', id, key: 'space'}, dialog)});
    dialog.watch(id, facts => { input.checked = !!facts.pressed; });
    return make('label', {class: 'segment'}, input, make('span', {}, dialog.get(id).label));
  }));
  const choice = freshId();
  /** @type {{[id: number]: HTMLElement}} */
  const panes = {[kTwo]: make('div', {class: 'rows'}, colourRow(model, dialog, kStart), colourRow(model, dialog, kEnd), numberRow(model, dialog, kMidpoint)),
    [kMany]: new FountainBar(model, dialog, kFountain).element};
  const colours = make('div', {class: 'segments', role: 'radiogroup', 'aria-label': 'Colors'}, ...[kTwo, kMany].map(id => {
    const input = make('input', {type: 'radio', name: choice, onchange: () => model.post({op: 'click', id}, dialog)});
    dialog.watch(id, facts => {
      input.checked = !!facts.check;
      panes[id].hidden = !facts.check;
    });
    return make('label', {class: 'segment'}, input, make('span', {}, dialog.get(id).label));
  }));
  const numbers = [kRotation, kEdgePad, kCentreX, kCentreY].map(id => {
    const row = numberRow(model, dialog, id);
    dialog.watch(id, facts => row.classList.toggle('off', !facts.enabled));
    return row;
  });
  return make('div', {class: 'layer-body gradient'},
    make('div', {class: 'gradient-picture'}, drawnControl(model, dialog, kPreview, 'The gradient; arrows turn or move it', {className: 'gradient-face'}), hint),
    make('div', {class: 'rows'}, shapes, ...numbers), make('div', {class: 'gradient-colours'}, colours, ...Object.values(panes)));
}
