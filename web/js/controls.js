// SPDX-License-Identifier: MIT
// A control of a dialog as an element of the page. Each function makes the element and keeps it up to date.
import {clamp, echo, freshId, icon, make} from './dom.js';
import {putPicture} from './player.js';

/** @typedef {import('./model.js').Model} Model */
/** @typedef {import('./model.js').Dialog} Dialog */
/** @typedef {import('./model.js').Facts} Facts */

const kShipped = 'tlmplgm4';  // the group that comes with the program

/**
 * A control's face at the size that the page has for it.
 * @param {import('./model.js').Model} model
 * @param {import('./model.js').Dialog} dialog
 * @param {number} id
 * @param {{width?: number, height?: number, item?: number, className?: string}} [options]
 *   without a size: as large as the canvas is shown
 * @returns {HTMLCanvasElement}
 */
export function faceOf(model, dialog, id, options = {}) {
  /** @type {HTMLCanvasElement} */
  const canvas = make('canvas', {class: options.className || 'face'});
  const context = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
  const item = options.item ?? -1;
  dialog.faces.set(`${id}/${item}`, (message, payload) => putPicture(context, message, payload));
  let shown = '';
  const subscribe = (/** @type {number} */ width, /** @type {number} */ height) => {
    if (width < 2 || height < 2 || shown === `${width}x${height}`) return;
    shown = `${width}x${height}`;
    model.post({op: 'face', id, width, height, ...(item >= 0 ? {item} : {})}, dialog);
  };
  if (options.width && options.height) {
    subscribe(options.width, options.height);
  } else {
    new ResizeObserver(entries => {
      const box = entries[0].contentRect;
      subscribe(Math.round(box.width), Math.round(box.height));
    }).observe(canvas);
  }
  return canvas;
}

/** Sliders of wide ranges are finer at their low end. @param {number[]} range */
function scaleOf([low, high]) {
  const wide = high - low > 1200;
  if (!wide) return {low, high, toNumber: (/** @type {number} */ at) => at, toPlace: (/** @type {number} */ value) => value};
  const span = high - low;
  return {low: 0, high: 1000, toNumber: (/** @type {number} */ at) => Math.round(low + span * (at / 1000) ** 3),
    toPlace: (/** @type {number} */ value) => Math.round(1000 * Math.cbrt((value - low) / span))};
}

/** @param {Facts} facts @param {string} [help] */
function label(facts, help, id = '') {
  return make('label', {class: 'label', for: id || null, title: help || null}, facts.label);
}

/** @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] */
export function numberRow(model, dialog, id, help) {
  const facts = dialog.get(id), field = freshId();
  const range = facts.range || [0, 100, 0];
  const post = (/** @type {string|number} */ value) => model.post({op: 'type', id, text: String(value)}, dialog);
  const isSeed = /seed/i.test(facts.label);
  const scale = scaleOf(range);
  const number = make('input', {type: 'number', id: field, min: range[0], max: range[1], title: `${range[0]} to ${range[1]}`, inputmode: 'numeric',
    oninput: () => { if (/^-?\d+$/.test(number.value)) post(number.value); },
    onchange: () => {
      const value = clamp(Math.round(Number(number.value) || 0), range[0], range[1]);
      number.value = value;
      post(value);
    }});
  const slider = isSeed
    ? make('button', {class: 'quiet dice', onclick: () => post(range[0] + Math.floor(Math.random() * Math.min(range[1] - range[0], 32000)))},
      icon('dice'), 'Shuffle')
    : make('input', {type: 'range', min: scale.low, max: scale.high, 'aria-label': facts.label, 'aria-valuemin': range[0], 'aria-valuemax': range[1],
      oninput: () => {
        const value = scale.toNumber(Number(slider.value));
        number.value = value;
        post(value);
      },
      ondblclick: () => post(range[2])});
  const row = make('div', {class: 'row number'}, label(facts, help, field), slider, number);
  const show = echo(number);
  dialog.watch(id, now => {
    show(now.text || '');
    number.disabled = slider.disabled = !now.enabled;
    row.hidden = !now.visible;
    if (isSeed) return;
    const value = clamp(Number(now.text) || 0, range[0], range[1]);
    if (document.activeElement !== slider || scale.toNumber(Number(slider.value)) !== value) slider.value = scale.toPlace(value);
    slider.setAttribute('aria-valuenow', value);
    slider.setAttribute('aria-valuetext', value);
    slider.style.setProperty('--at', `${(slider.value - scale.low) * 100 / (scale.high - scale.low)}%`);
  });
  return row;
}

/** @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] @param {string} [name] */
export function checkBox(model, dialog, id, help, name) {
  const input = make('input', {type: 'checkbox', onchange: () => model.post({op: 'click', id}, dialog)});
  const element = make('label', {class: 'check', title: help || null}, input, name || dialog.get(id).label);
  dialog.watch(id, now => {
    input.checked = !!now.check;
    input.disabled = !now.enabled;
    element.hidden = !now.visible;
  });
  return element;
}

/** @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] */
export function comboRow(model, dialog, id, help) {
  const field = freshId();
  const select = make('select', {id: field, onchange: () => model.post({op: 'choose', id, index: select.selectedIndex}, dialog)});
  const row = make('div', {class: 'row wide'}, label(dialog.get(id), help, field), select);
  /** @type {string[]|undefined} */
  let items;
  dialog.watch(id, now => {
    if (items !== now.items) {
      items = now.items;
      select.replaceChildren(...(items || []).map(text => make('option', {}, text === kShipped ? 'Built-in' : text)));
    }
    select.selectedIndex = now.selection ?? -1;
    select.disabled = !now.enabled;
    row.hidden = !now.visible;
  });
  return row;
}

/** A colour: the browser's picker and the six digits. @param {string} name @param {(value: string) => void} post */
export function colourField(name, post) {
  const picker = make('input', {type: 'color', 'aria-label': name, oninput: () => { hex.value = picker.value; post(picker.value); }});
  const hex = make('input', {class: 'hex', 'aria-label': `${name}, hexadecimal`, maxlength: 7, spellcheck: 'false', autocomplete: 'off',
    oninput: () => {
      const digits = /^#?([0-9a-f]{6})$/i.exec(hex.value.trim()) || /^#?([0-9a-f])([0-9a-f])([0-9a-f])$/i.exec(hex.value.trim());
      hex.toggleAttribute('aria-invalid', !digits);
      if (!digits) return;
      const value = digits.length === 2 ? `#${digits[1]}` : `#${digits.slice(1).map(d => d + d).join('')}`;
      picker.value = value.toLowerCase();
      if (digits.length === 2) post(picker.value);
    },
    onchange: () => { hex.value = picker.value; hex.removeAttribute('aria-invalid'); post(picker.value); }});
  const element = make('div', {class: 'colour'}, make('span', {class: 'well'}, picker), hex);
  const showPicker = echo(picker), showHex = echo(hex);
  return {element, show: (/** @type {string} */ value, enabled = true) => {
    showPicker(value);
    showHex(value);
    picker.disabled = hex.disabled = !enabled;
  }};
}

/** @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] @param {Node|null} [extra] */
export function colourRow(model, dialog, id, help, extra = null) {
  const facts = dialog.get(id);
  const field = colourField(facts.label, value => model.post({op: 'colour', id, value}, dialog));
  const row = make('div', {class: 'row wide', role: 'group', 'aria-label': facts.label},
    make('span', {class: 'label', title: help || null}, facts.label), make('div', {class: 'pair'}, field.element, extra));
  dialog.watch(id, now => {
    field.show(now.colour || '#000000', now.enabled);
    row.hidden = !now.visible;
  });
  return row;
}

const kKinds = ['Color', 'Gradient', 'Texture', 'Tile'];

/** @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] @param {Node|null} [extra] @param {string} [name] */
export function materialRow(model, dialog, id, help, extra = null, name) {
  const title = name || dialog.get(id).label;
  const colour = colourField(title, value => model.post({op: 'colour', id, value}, dialog));
  const swatch = make('button', {class: 'swatch', 'aria-label': `Edit ${title.toLowerCase()}`, onclick: () => model.post({op: 'edit', id}, dialog)},
    faceOf(model, dialog, id, {className: 'swatch-face'}), make('span', {class: 'edit'}, 'Edit'));
  const kinds = make('select', {class: 'kinds', 'aria-label': `Kind of ${title.toLowerCase()}`,
    onchange: () => model.post({op: 'kind', id, kind: kinds.selectedIndex}, dialog)}, ...kKinds.map(kind => make('option', {}, kind)));
  const row = make('div', {class: 'row wide', role: 'group', 'aria-label': title}, make('span', {class: 'label', title: help || null}, title),
    make('div', {class: 'material'}, colour.element, swatch, kinds, extra));
  dialog.watch(id, now => {
    const solid = now.material?.kind === 0;
    colour.show(now.material?.colour || '#000000', now.enabled);
    colour.element.hidden = !solid;
    swatch.hidden = solid;
    kinds.selectedIndex = now.material?.kind ?? 0;
    row.hidden = !now.visible;
  });
  return row;
}

/** Cells by index: column, row, angle of the arrow, name. @type {{[kind: string]: [number, number, number, string][]}} */
const kCells = {
  'shadow-direction': [[1, 1, -45, 'up left'], [2, 1, 0, 'up'], [3, 1, 45, 'up right'], [3, 2, 90, 'right'], [1, 2, -90, 'left'],
    [1, 3, -135, 'down left'], [2, 3, 180, 'down'], [3, 3, 135, 'down right']],
  'scroll-four': [[2, 1, 0, 'up'], [3, 2, 90, 'right'], [1, 2, -90, 'left'], [2, 3, 180, 'down']],
  'scroll-two': [[1, 1, -90, 'left'], [2, 1, 90, 'right']],
  'scroll-axis': [[1, 1, 90, 'across'], [2, 1, 180, 'up and down']],
};

/** @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] */
export function directionRow(model, dialog, id, help) {
  const facts = dialog.get(id), name = freshId();
  const cells = kCells[facts.kind];
  const inputs = cells.map(([, , , words], index) => make('input', {type: 'radio', name, 'aria-label': words, onchange: () => model.post({op: 'direction', id, index}, dialog)}));
  const square = cells.some(([, row]) => row > 1);
  const row = make('fieldset', {class: `row wide plain`}, make('legend', {class: 'label', title: help || null}, facts.label),
    make('div', {class: square ? 'pick square' : 'pick'}, ...cells.map(([column, line, turn, words], index) => {
      const cell = make('label', {class: 'cell', title: words}, inputs[index], icon('arrow', turn));
      cell.style.gridArea = `${line} / ${column}`;
      return cell;
    })));
  dialog.watch(id, now => {
    inputs.forEach((input, index) => { input.checked = index === now.index; });
    row.hidden = !now.visible;
  });
  return row;
}

/** Whatever the control is. @param {Model} model @param {Dialog} dialog @param {number} id @param {string} [help] @param {Node|null} [extra] */
export function rowOf(model, dialog, id, help, extra = null) {
  const facts = dialog.get(id);
  switch (facts.kind) {
    case 'number':
    case 'track': return numberRow(model, dialog, id, help);
    case 'check': return make('div', {class: 'row wide'}, make('span', {}), checkBox(model, dialog, id, help));
    case 'combo': return comboRow(model, dialog, id, help);
    case 'colour': return colourRow(model, dialog, id, help, extra);
    case 'material': return materialRow(model, dialog, id, help, extra);
    default: return facts.kind in kCells ? directionRow(model, dialog, id, help) : null;
  }
}
