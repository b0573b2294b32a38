// SPDX-License-Identifier: MIT
// Questions of the dialogs: messages, yes or no, names, colours, menus, pictures.
import {make, raiseToasts, removeLayer} from './dom.js';
import {chooseFile} from './header.js';
import {closeMenu, openMenu} from './menu.js';
import {colourField} from './controls.js';

/** @typedef {import('./model.js').Model} Model */

const kMostPixels = 2 ** 24;  // more than any tile has; to pack a larger picture would hold up the dialog for a minute until it refuses it

export class Asks {
  /** @param {Model} model */
  constructor(model) {
    this.model = model;
    /** @type {HTMLDialogElement|null} */
    this.box = null;
    this.pointer = {x: innerWidth / 2, y: innerHeight / 2};
    addEventListener('pointerdown', event => { this.pointer = {x: event.clientX, y: event.clientY}; }, true);
    /** @type {File|undefined} a picture that was dropped, for the next question for one */
    this.dropped = undefined;
  }

  /** @param {number} ask @param {any} value */
  answer(ask, value) {
    this.model.post({op: 'answer', ask, value});
  }

  /** @param {any} message  of type ask */
  async show(message) {
    this.settle();
    const {ask} = message;
    switch (message.kind) {
      case 'menu': return this.menu(message);
      case 'message': return this.ask(message, [], [['OK', true]], true);
      case 'question': return this.ask(message, [], [['No', false], ['Yes', true]], false);
      case 'name': {
        const field = make('input', {type: 'text', value: message.start, 'aria-label': 'Name', maxlength: 200});
        return this.ask({...message, text: message.title}, [field], [['Cancel', null], ['OK', () => field.value]], null);
      }
      case 'colour': {
        let value = message.start;
        const field = colourField('Color', next => { value = next; });
        field.show(value);
        return this.ask({...message, text: 'Choose a color'}, [field.element], [['Cancel', null], ['OK', () => value]], null);
      }
      case 'picture': {
        const file = this.dropped || await chooseFile('image/png,image/webp,image/jpeg,image/gif,image/bmp');
        this.dropped = undefined;
        return this.answer(ask, file ? await this.model.connection.upload(await asPng(file)) : null);
      }
    }
  }

  /**
   * @param {any} message @param {HTMLElement[]} fields
   * @param {[string, any][]} buttons  the last one is the default; a function gives the answer
   * @param {any} cancelled
   */
  ask(message, fields, buttons, cancelled) {
    const box = make('dialog', {class: 'layer ask', 'aria-label': 'Glyphmotion', oncancel: (/** @type {Event} */ event) => {
      event.preventDefault();
      this.answer(message.ask, cancelled);
    }}, make('form', {method: 'dialog', onsubmit: (/** @type {Event} */ event) => {
      event.preventDefault();
      const value = buttons[buttons.length - 1][1];
      this.answer(message.ask, typeof value === 'function' ? value() : value);
    }}, make('p', {class: 'ask-text'}, message.text), ...fields, make('div', {class: 'layer-buttons'}, ...buttons.map(([text, value], i) =>
      make('button', {class: i === buttons.length - 1 ? 'main' : '', type: i === buttons.length - 1 ? 'submit' : 'button',
        onclick: i === buttons.length - 1 ? null : () => this.answer(message.ask, value)}, text)))));
    document.body.append(box);
    box.showModal();
    raiseToasts();
    if (fields[0] instanceof HTMLInputElement) fields[0].select();
    this.box = box;
  }

  /** @param {any} message */
  menu(message) {
    openMenu(this.pointer, message.items.map((/** @type {any} */ item) => ({text: item.text, ...(item.checked ? {checked: true} : {}),
      action: () => this.answer(message.ask, item.id)})), () => this.answer(message.ask, 0));
  }

  /** The question is answered, here or elsewhere. */
  settle() {
    if (this.box) removeLayer(this.box);
    this.box = null;
    closeMenu();
  }
}

/** Any picture that the browser reads, as one that the program reads. @param {Blob} file @returns {Promise<Blob>} */
export async function asPng(file) {
  try {
    const bitmap = await createImageBitmap(file);
    const share = Math.min(1, Math.sqrt(kMostPixels / (bitmap.width * bitmap.height)));
    const canvas = new OffscreenCanvas(Math.max(1, Math.round(bitmap.width * share)), Math.max(1, Math.round(bitmap.height * share)));
    /** @type {OffscreenCanvasRenderingContext2D} */ (canvas.getContext('2d')).drawImage(bitmap, 0, 0, canvas.width, canvas.height);
    return await canvas.convertToBlob({type: 'image/png'});
  } catch {
    return file;
  }
}
