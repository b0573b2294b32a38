// SPDX-License-Identifier: MIT
// Letters from a font file: chosen or dropped, shown by its name, taken away.
import {make, toast} from './dom.js';
import {chooseFile} from './header.js';

const kLargest = 32e6;  // bytes, as many as the program takes

/** @param {string} name */
export const isFontName = name => /\.(ttf|otf|ttc|otc)$/i.test(name);

export class FontFile {
  /** @param {import('./model.js').Model} model */
  constructor(model) {
    this.model = model;
    this.choose = make('button', {class: 'quiet', onclick: () => this.ask()}, 'Use a font file…');
    this.remove = make('button', {class: 'quiet', onclick: () => model.post({op: 'font'}, model.main)}, 'Remove');
    this.name = make('span', {class: 'font-name'});
    this.row = make('div', {class: 'row wide'}, make('span', {class: 'label'}), make('div', {class: 'pair font-file'}, this.name, this.choose, this.remove));
  }

  /** @param {any} message  of type document */
  follow({font}) {
    this.name.textContent = font;
    this.name.hidden = this.remove.hidden = !font;
    this.choose.hidden = !!font;
  }

  async ask() {
    const file = await chooseFile('.ttf,.otf,.ttc,.otc');
    if (file) await this.take(file);
  }

  /** @param {File} file */
  async take(file) {
    const {model} = this;
    if (file.size > kLargest) return toast(`${file.name} is larger than 32 MB, too large for a font`, 'error');
    const upload = await model.connection.upload(file);
    model.post({op: 'font', name: file.name, upload}, model.main);
  }
}
