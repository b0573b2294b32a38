// SPDX-License-Identifier: MIT
// The words: a field that grows.
import {echo} from './controls.js';

const kText = 52;

export class TextField {
  /** @param {import('./model.js').Model} model @param {HTMLTextAreaElement} field */
  constructor(model, field) {
    this.field = field;
    const show = echo(field);
    this.show = (/** @type {string} */ text) => {
      show(text);
      this.grow();
    };
    field.addEventListener('input', () => {
      this.grow();
      model.post({op: 'type', id: kText, text: field.value.replace(/\r?\n/g, '\u2028')}, model.main);
    });
    field.addEventListener('keydown', event => {
      if (event.key === 'Enter' && !event.shiftKey) event.preventDefault();
    });
    addEventListener('resize', () => this.grow());
  }

  /** @param {import('./model.js').Dialog} dialog */
  attach(dialog) {
    const {limit} = dialog.get(kText);
    if (limit) this.field.maxLength = limit;
    dialog.watch(kText, facts => this.show((facts.text || '').replace(/\u2028/g, '\n')));
  }

  grow() {
    this.field.style.height = 'auto';
    this.field.style.height = `${this.field.scrollHeight + 2}px`;
  }
}
