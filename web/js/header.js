// SPDX-License-Identifier: MIT
// The document: its name, undo and redo, files in and out.
import {byId, icon, make, sentence, sizeText, toast} from './dom.js';
import {openMenu} from './menu.js';

/** @typedef {import('./model.js').Model} Model */

/** What the program can write, as far as it was built with it: format, name, what for. */
const kFormats = [['gif', 'GIF', 'plays everywhere'], ['webp', 'Animated WebP', 'all colors, small'], ['apng', 'Animated PNG', 'all colors, lossless'],
  ['avif', 'AVIF', 'the smallest'], ['webm', 'WebM video', 'for editors'], ['frames', 'Frames', 'PNG files in a ZIP']];

/** @param {string} name @param {Blob} blob */
function download(name, blob) {
  const link = make('a', {href: URL.createObjectURL(blob), download: name});
  document.body.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(link.href), 30000);
}

/** @param {string} accept @returns {Promise<File|undefined>} */
export function chooseFile(accept) {
  return new Promise(resolve => {
    const input = make('input', {type: 'file', accept, class: 'hidden', onchange: () => done(input.files[0]), oncancel: () => done(undefined)});
    const done = (/** @type {File|undefined} */ file) => {
      input.remove();
      resolve(file);
    };
    document.body.append(input);
    input.click();
  });
}

export class Header {
  /** @param {Model} model @param {import('./stage.js').Stage} stage */
  constructor(model, stage) {
    this.model = model;
    this.stage = stage;
    this.name = byId('name');
    /** @type {Set<string>} */
    this.exporting = new Set();
    this.undo = byId('undo');
    this.redo = byId('redo');
    this.undo.append(icon('undo'));
    this.redo.append(icon('redo'));
    byId('formats').append(icon('down'));
    this.undo.addEventListener('click', () => model.post({op: 'undo'}, model.main));
    this.redo.addEventListener('click', () => model.post({op: 'redo'}, model.main));
    this.name.addEventListener('change', () => this.rename());
    this.name.addEventListener('keydown', (/** @type {KeyboardEvent} */ event) => { if (event.key === 'Enter') this.name.blur(); });
    byId('download').addEventListener('click', () => this.export('gif'));
    byId('formats').addEventListener('click', () => this.formatMenu());
    byId('files').addEventListener('click', () => this.fileMenu());
    addEventListener('keydown', event => this.key(event));
  }

  /** @param {any} message  of type document */
  follow(message) {
    if (document.activeElement !== this.name) this.name.value = message.name.replace(/\.gm4$/i, '');
    this.name.style.width = `${Math.min(Math.max(this.name.value.length, 6), 28) + 1.5}ch`;
    byId('saved').textContent = message.saved ? (message.path ? 'Saved' : '') : 'Not saved yet';
    const focused = document.activeElement;
    const own = (focused === this.undo && !message.undo) || (focused === this.redo && !message.redo);
    this.undo.disabled = !message.undo;
    this.redo.disabled = !message.redo;
    if (own) (this.undo.disabled ? this.redo : this.undo).focus();  // a button that is off would drop the focus
    for (const id of ['download', 'formats']) byId(id).disabled = !message.text;
    document.title = `${message.saved ? '' : '• '}${message.text || 'Glyphmotion'} – Glyphmotion`;
  }

  rename() {
    const name = this.name.value.trim().replace(/[/\\]/g, '-') || 'untitled';
    this.model.post({op: 'rename', name: `${name}.gm4`}, this.model.main);
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (!(event.ctrlKey || event.metaKey) || event.altKey || this.model.dialogs.length !== 1) return;
    const key = event.key.toLowerCase();
    /** @type {(() => void)|undefined} */
    const action = key === 'z' ? () => this.model.post({op: event.shiftKey ? 'redo' : 'undo'}, this.model.main)
      : key === 'y' ? () => this.model.post({op: 'redo'}, this.model.main)
        : key === 's' ? () => this.save(event.shiftKey) : key === 'o' ? () => this.open() : undefined;
    if (!action) return;
    event.preventDefault();
    action();
  }

  fileMenu() {
    const {hello, connection} = this.model, fonts = connection.fontItems?.() ?? [];
    openMenu(byId('files'), [
      {text: 'New', action: () => this.model.post({op: 'new'}, this.model.main)},
      {text: 'New tab', action: () => open(location.href, '_blank', 'noopener')},
      {text: 'Open…', keys: 'Ctrl+O', action: () => this.open()},
      ...(hello.recent.length ? [{heading: 'Recent'}, ...hello.recent.slice(0, 6).map((/** @type {any} */ each) => ({
        text: each.name.replace(/\.gm4$/i, ''), note: `${each.text} · ${each.effect}`, action: () => this.model.post({op: 'recent', key: each.key}, this.model.main)}))] : []),
      {line: true},
      {text: 'Save', keys: 'Ctrl+S', action: () => this.save(false)},
      {text: 'Save a copy…', action: () => this.save(true)},
      {line: true},
      ...(fonts.length ? [...fonts, {line: true}] : []),
      {text: 'About Glyphmotion', action: () => this.model.post({op: 'click', id: 18}, this.model.main)},
    ]);
  }

  async open() {
    const file = await chooseFile('.gm4,.GM4');
    if (file) this.model.post({op: 'open', name: file.name, document: await file.text()}, this.model.main);
  }

  /** @param {boolean} copy */
  async save(copy) {
    const path = this.model.document.path && !copy;
    if (path) return this.model.post({op: 'save', tag: ''}, this.model.main);
    const {message, payload} = await this.model.request({op: 'save', copy});
    if (message.error) return toast(sentence(message.error), 'error');
    download(message.name, new Blob([/** @type {any} */ (payload)], {type: message.mime}));
  }

  formatMenu() {
    const {formats = []} = this.model.hello, {main} = this.model;
    const clear = main.order.find(facts => facts.section === 'output' && facts.label === 'Transparent');
    openMenu(byId('formats'), [
      ...kFormats.filter(([format]) => format === 'frames' || formats.includes(format)).map(([format, text, note]) => ({text, note, action: () => this.export(format)})),
      {line: true},
      ...(clear ? [{text: 'Transparent background', checked: !!clear.check, toggle: true, action: () => this.model.post({op: 'click', id: clear.id}, main)}, {line: true}] : []),
      {text: 'Copy this picture', action: () => this.copyPicture()},
      {text: 'Copy HTML for a web page', action: () => this.copyText(this.html(), 'The HTML that shows this file is on the clipboard')},
      {text: 'Copy the command line', action: () => this.copyText(this.model.document.command, 'The command line that makes this file is on the clipboard')},
    ]);
  }

  /** @param {string} format */
  async export(format) {
    const order = `${format} ${this.model.document.revision}`;
    if (this.exporting.has(order)) return;  // a second click on what is on its way
    this.exporting.add(order);
    const button = byId('download');
    button.setAttribute('aria-busy', 'true');
    const {message, payload} = await this.model.request({op: 'export', format});
    this.exporting.delete(order);
    if (!this.exporting.size) button.removeAttribute('aria-busy');
    if (message.error) return toast(sentence(message.error), 'error');
    download(message.name, new Blob([/** @type {any} */ (payload)], {type: message.mime}));
    toast(`${message.name}, ${sizeText(payload.length)}, is in your downloads`);
  }

  async copyPicture() {
    const blob = await new Promise(resolve => this.stage.canvas.toBlob(resolve, 'image/png'));
    try {
      await navigator.clipboard.write([new ClipboardItem({'image/png': /** @type {any} */ (blob)})]);
      toast('The picture that you see is on the clipboard');
    } catch {
      toast('The browser did not let the picture onto the clipboard', 'error');
    }
  }

  /** The picture as an element, for a page beside the file that Download gives. */
  html() {
    const {name, text} = this.model.document, {width, height} = this.stage.canvas;
    const image = document.implementation.createHTMLDocument().createElement('img');  // of a document that loads nothing
    const attributes = {src: encodeURI(name.replace(/\.gm4$/i, '.gif')), width, height, alt: text.replace(/\u2028/g, ' ')};
    for (const [key, value] of Object.entries(attributes)) image.setAttribute(key, value);
    return image.outerHTML;
  }

  /** @param {string} text @param {string} words  that say so */
  async copyText(text, words) {
    try {
      await navigator.clipboard.writeText(text);
      toast(words);
    } catch {
      toast(text);
    }
  }
}
