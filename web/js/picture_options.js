// SPDX-License-Identifier: MIT
// Options beside the dialog: the canvas, how lines are set, the file, the palette. Names, ranges, words and sentences come with them.
import {clamp, echo, freshId, make} from './dom.js';

/**
 * @typedef {object} Option
 * @property {string} name
 * @property {string} label
 * @property {string} group
 * @property {string} help
 * @property {string} initial
 * @property {string} value
 * @property {boolean} enabled
 * @property {number[]} [range]
 * @property {string[]} [words]
 */

/** Sizes that people ask for. @type {[string, string, string][]} */
const kSizes = [['As large as the text', '', ''], ['Emoji', '128', '128'], ['Small banner', '468', '60'], ['Leaderboard', '728', '90'], ['Email header', '600', '200'],
  ['Square post', '1080', '1080'], ['Link preview', '1200', '630'], ['Full HD', '1920', '1080']];

/** Words that read better as sentences do. @type {{[name: string]: {[word: string]: string}}} */
const kWords = {
  fit: {shrink: 'Make it smaller', none: 'Cut its edges off'},
  align: {'': 'Automatic'},
  'text-direction': {auto: 'From the letters', ltr: 'Left to right', rtl: 'Right to left'},
  emoji: {color: 'In color', mono: 'In the fill'},
  start: {'': 'First as built', rest: 'The longest'},
};
/** What has a place of its own. */
const kElsewhere = ['width', 'height', 'palette'];
/** The placeholder of a number that is not set. @type {{[name: string]: string}} */
const kBlank = {width: 'auto', height: 'auto', 'max-bytes': 'any'};
/** @type {{[name: string]: string}} */
const kUnits = {'line-space': '%', loop: '0: for ever', 'max-bytes': 'bytes'};

const kList = 13, kCustom = 14;  // the palette of the dialog

/** @param {string} name @param {string} word */
const wordOf = (name, word) => kWords[name]?.[word] ?? word.charAt(0).toUpperCase() + word.slice(1);

export class PictureOptions {
  /** @param {import('./model.js').Model} model */
  constructor(model) {
    this.model = model;
    /** @type {Map<string, Option>} */
    this.options = new Map();
    /** @type {(() => void)[]} */
    this.shows = [];
  }

  /** @param {Option[]} options */
  take(options) {
    for (const option of options) this.options.set(option.name, option);
    for (const show of this.shows) show();
  }

  /** New elements follow; the old ones are gone. */
  begin() { this.shows = []; }

  /** @param {string} name @param {string} value */
  set(name, value) { this.model.post({op: 'option', name, value}, this.model.main); }

  /** @param {(option: Option) => void} show @param {string} name */
  watch(name, show) {
    const now = () => { const option = this.options.get(name); if (option) show(option); };
    this.shows.push(now);
    now();
  }

  /** @param {Option} option @param {string} id */
  number({name, range = [0, 0], initial}, id) {
    const field = make('input', {type: 'number', id, min: range[0], max: range[1], placeholder: kBlank[name] ?? initial, inputmode: 'numeric',
      oninput: () => { if (field.value === '' || (Number(field.value) >= range[0] && Number(field.value) <= range[1])) this.set(name, field.value); },
      onchange: () => {
        if (field.value !== '') field.value = clamp(Math.round(Number(field.value) || 0), range[0], range[1]);
        this.set(name, field.value);
      }});
    const show = echo(field);
    this.watch(name, now => {
      show(now.value);
      field.disabled = !now.enabled;
    });
    return field;
  }

  /** @param {Option} option @param {string} id */
  choice({name, words = []}, id) {
    const select = make('select', {id, onchange: () => this.set(name, words[select.selectedIndex])}, ...words.map(word => make('option', {}, wordOf(name, word))));
    this.watch(name, now => {
      select.selectedIndex = words.indexOf(now.value);
      select.disabled = !now.enabled;
    });
    return select;
  }

  /** Width by height, and sizes to choose from. */
  canvas() {
    const width = this.options.get('width'), height = this.options.get('height');
    if (!width || !height) return [];
    const ready = make('select', {id: freshId(), onchange: () => {
      const size = kSizes[ready.selectedIndex];
      if (!size) return fields[0].focus();
      this.set('width', size[1]);
      this.set('height', size[2]);
    }}, ...kSizes.map(([name, w, h]) => make('option', {}, w ? `${name}, ${w} × ${h}` : name)), make('option', {}, 'Custom size'));
    const fields = [width, height].map(option => {
      const field = this.number(option, freshId());
      field.setAttribute('aria-label', option.label);
      return field;
    });
    this.watch('height', () => {
      const value = (/** @type {string} */ name) => this.options.get(name)?.value;
      const at = kSizes.findIndex(([, w, h]) => w === value('width') && h === value('height'));
      ready.selectedIndex = at < 0 ? kSizes.length : at;
    });
    return [make('div', {class: 'row wide'}, make('label', {class: 'label', for: ready.id}, 'Picture'), ready),
      make('div', {class: 'row wide', role: 'group', 'aria-label': 'Size of the picture'}, make('span', {class: 'label'}, 'Pixels'),
        make('div', {class: 'pair sides'}, fields[0], make('span', {'aria-hidden': 'true'}, '×'), fields[1]))];
  }

  /** @param {string} group @returns {HTMLElement[]} */
  rows(group) {
    const rows = group === 'canvas' ? this.canvas() : [];
    for (const option of this.options.values()) {
      if (option.group !== group || kElsewhere.includes(option.name)) continue;
      const id = freshId(), title = `${option.help}.`;
      const field = option.words ? this.choice(option, id) : this.number(option, id);
      const row = make('div', {class: 'row wide'}, make('label', {class: 'label', for: id, title}, option.label),
        option.words ? field : make('div', {class: 'pair'}, field, make('span', {class: 'unit'}, kUnits[option.name])));
      this.watch(option.name, now => row.classList.toggle('off', !now.enabled));
      rows.push(row);
    }
    return rows;
  }
}

/** Whether the row shows this control of the dialog. @param {number} id */
export const isOfPalette = id => id === kList || id === kCustom;

/**
 * One list for where the colors of a GIF come from. The dialog has a check and a list for it, the program one word more.
 * @param {import('./model.js').Model} model @param {PictureOptions} picture
 */
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
