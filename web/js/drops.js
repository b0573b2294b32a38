// SPDX-License-Identifier: MIT
// What is dropped on the page: a document, a picture for a tile, a font, or text.
import {byId, toast} from './dom.js';
import {isFontName} from './font_file.js';
import {tooLong} from './text_field.js';

const kText = 52, kTile = 3, kTileDialog = 9981, kAddTile = 103;
const kNoText = /[\0-\x08\x0e-\x1f\ufffd]/;

export class Drops {
  /** @param {import('./model.js').Model} model @param {import('./asks.js').Asks} asks @param {import('./font_file.js').FontFile} font */
  constructor(model, asks, font) {
    this.model = model;
    this.font = font;
    this.asks = asks;
    let depth = 0;
    addEventListener('dragenter', event => {
      event.preventDefault();
      depth++;
      byId('drop').hidden = false;
    });
    addEventListener('dragleave', () => { if (--depth <= 0) byId('drop').hidden = true; });
    addEventListener('dragover', event => event.preventDefault());
    addEventListener('drop', event => {
      event.preventDefault();
      depth = 0;
      byId('drop').hidden = true;
      if (event.dataTransfer) this.take(event.dataTransfer);
    });
  }

  /** @param {DataTransfer} data */
  async take(data) {
    const file = data.files[0];
    if (!file) return this.text(data.getData('text/plain'));
    if (file.type.startsWith('image/')) return this.picture(file);
    if (this.model.dialogs.length > 1) return toast('Close the editor first, then drop the file once more');
    if (isFontName(file.name)) return this.font.take(file);
    if (file.size > 8e6) return toast(`${file.name} is too large for a document`, 'error');
    const words = await file.text();
    if (!words.trim()) return toast(`${file.name} is empty`, 'error');
    if (/\.gm4$/i.test(file.name) || words.startsWith(';This is a document')) {
      return this.model.post({op: 'open', name: file.name, document: words}, this.model.main);
    }
    if (kNoText.test(words)) return toast(`${file.name} is not a document, a picture, a font or text`, 'error');
    this.text(words);
  }

  /** @param {string} words */
  text(words) {
    const text = words.trim().split(/\r?\n/).filter(line => line.trim()).join('\u2028');
    const {limit} = this.model.main.get(kText);
    if (limit && text.length > limit) toast(tooLong(limit));
    if (text) this.model.post({op: 'type', id: kText, text: text.slice(0, limit || text.length)}, this.model.main);
  }

  /** Into the tile editor of the fill, which asks what group it goes to. @param {File} file */
  async picture(file) {
    const {model} = this;
    if (!await createImageBitmap(file).catch(() => null)) return toast(`${file.name} is not a picture that a browser can read`, 'error');
    this.asks.dropped = file;
    if (model.top.template === kTileDialog) return model.post({op: 'click', id: kAddTile}, model.top);
    const fill = model.main.order.find(facts => facts.section === 'fill' && facts.kind === 'material' && facts.visible);
    if (!fill || model.dialogs.length > 1) return;
    model.post({op: 'kind', id: fill.id, kind: kTile}, model.main);
    model.post({op: 'edit', id: fill.id}, model.main);
    toast('Make a new group or choose your own, then add the picture');
  }
}
