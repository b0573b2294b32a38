// SPDX-License-Identifier: MIT
// A dialog without a layout of its own: its controls in their order.
import {make} from './dom.js';
import {rowOf} from './controls.js';

/** @param {import('./model.js').Model} model @param {import('./model.js').Dialog} dialog */
export function buildGeneric(model, dialog) {
  const rows = dialog.order.map(facts => {
    if (facts.kind === 'paragraph') return make('p', {class: 'about'}, facts.text || '');
    if (facts.kind === 'button' && ![1, 2, 9].includes(facts.id)) return make('button', {onclick: () => model.post({op: 'click', id: facts.id}, dialog)}, facts.label);
    if (facts.kind === 'edit') {
      const field = make('input', {type: 'text', value: facts.text, 'aria-label': facts.label, oninput: () => model.post({op: 'type', id: facts.id, text: field.value}, dialog)});
      return make('div', {class: 'row wide'}, make('span', {class: 'label'}, facts.label), field);
    }
    return facts.id > 0 ? rowOf(model, dialog, facts.id) : null;
  });
  return make('div', {class: 'layer-body rows'}, ...rows);
}
