// SPDX-License-Identifier: MIT
// One list for where the colors of a GIF come from. The dialog has a check and a list for it, the program one word more.
import {freshId, make} from './dom.js';

const kList = 13, kCustom = 14;

/** Whether the row shows this control of the dialog. @param {number} id */
export const isOfPalette = id => id === kList || id === kCustom;

/** @param {import('./model.js').Model} model @param {import('./picture_options.js').PictureOptions} picture */
export function paletteRow(model, picture) {
  const dialog = model.main, id = freshId();
  const word = () => picture.options.get('palette')?.value ?? '';
  const custom = () => !!dialog.get(kCustom).check;
  const items = () => dialog.get(kList).items ?? [];
  // One choice is one step of undo.
  const post = (/** @type {{[key: string]: any}} */ event) => model.post({...event, step: 'palette'}, dialog);
  const set = (/** @type {string} */ value) => { if (word() !== value) post({op: 'option', name: 'palette', value}); };
  const list = (/** @type {number} */ index) => {
    set('');
    if (custom()) post({op: 'click', id: kCustom});
    post({op: 'choose', id: kList, index});
  };
  const best = items().length - 1;
  const own = [
    {text: 'Made for the picture', chosen: () => custom() && !word(), choose: () => { set(''); if (!custom()) post({op: 'click', id: kCustom}); }},
    {text: `${items()[best]}, larger file`, chosen: () => word() === 'best' || (!word() && !custom() && dialog.get(kList).selection === best), choose: () => list(best)},
    {text: `${items()[best]} where it shows`, chosen: () => word() === 'auto', choose: () => set('auto')},
  ];
  const fixed = items().slice(0, best).map((text, index) => ({text, chosen: () => !word() && !custom() && dialog.get(kList).selection === index, choose: () => list(index)}));
  const choices = [...own, ...fixed];
  const select = make('select', {id, onchange: () => choices[select.selectedIndex].choose()}, ...choices.map(({text}) => make('option', {}, text)));
  const show = () => {
    select.selectedIndex = choices.findIndex(choice => choice.chosen());
    select.disabled = !dialog.get(kCustom).enabled;
  };
  dialog.watch(kList, show);
  dialog.watch(kCustom, show);
  picture.watch('palette', show);
  return make('div', {class: 'row wide'}, make('label', {class: 'label', for: id}, 'Palette'), select);
}
