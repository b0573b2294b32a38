// SPDX-License-Identifier: MIT
// The words: a field that grows with its lines.
import {echo, toast} from './dom.js';

const kText = 52;

// A line that has only been begun is not part of the picture yet.
const toDialog = (/** @type {string} */ text) => text.replace(/\s*\n\s*$/, '').replace(/\r?\n/g, '\u2028');

/** @param {number} limit */
export const tooLong = limit => `A text has ${limit} characters at most; the rest was left out`;

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
      model.post({op: 'type', id: kText, text: toDialog(field.value)}, model.main);
    });
    field.addEventListener('paste', event => {
      const room = field.maxLength - field.value.length + field.selectionEnd - field.selectionStart;
      if (field.maxLength > 0 && (event.clipboardData?.getData('text').length ?? 0) > room) toast(tooLong(field.maxLength));
    });
    addEventListener('resize', () => this.grow());
  }

  /** @param {import('./model.js').Dialog} dialog */
  attach(dialog) {
    this.field.readOnly = false;
    if (document.activeElement === document.body) this.field.focus({preventScroll: true});
    const {limit} = dialog.get(kText);
    if (limit) this.field.maxLength = limit;
    dialog.watch(kText, facts => {
      // The session guards a text that begins with a blank by a zero-width space.
      const text = (facts.text || '').replace(/^\u200b(?=[ =])/, '');
      this.show(toDialog(this.field.value) === text ? this.field.value : text.replace(/\u2028/g, '\n'));
    });
  }

  grow() {
    this.field.style.height = 'auto';
    this.field.style.height = `${this.field.scrollHeight + 2}px`;
  }
}
