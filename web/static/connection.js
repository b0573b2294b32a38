// SPDX-License-Identifier: MIT
// The line to the engine in a worker of this page, in place of the one to a program.
import {toast} from '../js/dom.js';
import {queueUp} from '../js/model.js';
import {fontItems} from './font_menu.js';
import {loadSupplies, ownSession} from './opening.js';
import {keepFont} from './store.js';
import {Workshop, newWorker} from './workshop.js';

/** @typedef {{[key: string]: any}} Json */
/** @typedef {(message: Json, payload: Uint8Array) => void} Receive */

const kMostRestarts = 3;  // of an engine that ends before it has shown anything

/** For visits without a net. It loads the page's files once more, so the first picture goes first. */
function keepPage() {
  navigator.serviceWorker?.register('sw.js').catch(() => {});  // without one it works online
}

export class Connection {
  /**
   * @param {Receive} receive
   * @param {(state: 'live'|'lost'|'ended'|'refused', words?: string) => void} changed
   */
  constructor(receive, changed) {
    this.receive = receive;
    this.changed = changed;
    /** @type {Json[]} */
    this.queue = [];
    this.posting = false;
    this.live = false;
    this.session = '';
    this.sent = 0;
    this.failures = 0;
    /** @type {Map<number, (name: string) => void>} */
    this.uploads = new Map();
    /** @type {(() => void)[]} */
    this.saves = [];
    /** @type {import('./opening.js').Supplies|undefined} */
    this.supplies = undefined;
    /** @type {Worker|undefined} */
    this.worker = undefined;
  }

  /** @param {string} path */
  call(path) { return fetch(path === '/help' ? 'help.html' : path); }

  async start() {
    this.hire();  // its own modules load meanwhile
    try {
      [this.supplies, this.session] = await Promise.all([loadSupplies(), ownSession()]);
      this.workshop = new Workshop(this.supplies, this.receive);
    } catch (error) {
      return this.changed('refused', error instanceof Error ? error.message : `${error}`);
    }
    this.open();
  }

  hire() {
    const worker = newWorker();
    worker.onmessage = ({data}) => this.hear(data);
    worker.onerror = event => {
      event.preventDefault();
      this.fail(event.message);
    };
    return this.worker = worker;
  }

  open() {
    this.sent = 0;
    this.posting = false;
    (this.worker ?? this.hire()).postMessage({open: {supplies: this.supplies, session: this.session}});
  }

  /** @param {any} data */
  hear(data) {
    if (data.json) {
      this.take(JSON.parse(data.json), data.payload, data.files);
    } else if ('idle' in data) {
      if (!this.live) {
        this.changed('live');
        keepPage();
      }
      this.live = true;
      this.posting = data.idle !== this.sent;
      if (!this.posting && this.queue.length) this.flush();
    } else if ('uploaded' in data) {
      this.uploads.get(data.ticket)?.(data.uploaded);
      this.uploads.delete(data.ticket);
    } else if ('saved' in data) {
      for (const settle of this.saves.splice(0)) settle();
    } else if ('failed' in data) {
      this.fail(data.failed);
    }
  }

  /** @param {Json} message @param {Uint8Array} payload @param {[string, Uint8Array][]} files  that an order of work needs */
  take(message, payload, files) {
    if (message.type === 'work') return this.workshop?.order(/** @type {any} */ (message), files);
    if (message.type === 'hello') {
      this.failures = 0;
      this.takeUp(message.recent);
    } else if (message.type === 'document') {
      const {name, text, effect, saved} = message;
      sessionStorage.setItem('document', JSON.stringify({name, text, effect, saved}));
    }
    this.receive(message, payload);
  }

  /** What this tab showed last was saved: then it is among the last documents, and not among the unsaved. @param {Json[]} recent */
  takeUp(recent) {
    const last = JSON.parse(sessionStorage.getItem('document') || '{}');
    const same = last.saved && recent.find(each => each.name === last.name && each.text === last.text && each.effect === last.effect);
    sessionStorage.removeItem('document');
    if (same) this.post({op: 'recent', key: same.key});
  }

  /** The engine is gone, most likely for lack of memory: another one takes up the document. @param {string} reason */
  fail(reason) {
    this.worker?.terminate();
    this.worker = undefined;
    this.live = false;
    this.queue = [];
    for (const settle of [...this.uploads.values(), ...this.saves.splice(0)]) settle('');
    this.uploads.clear();
    console.error(reason);
    if (!this.supplies) return;  // it was too early
    if (++this.failures > kMostRestarts) return this.changed('refused', 'The engine does not start in this browser. A newer one may help.');
    this.changed('lost', 'There was not enough memory for this. Your work is kept; a moment, please.');
    this.open();
  }

  /** Posts an event; returns at once. @param {Json} event */
  post(event) {
    queueUp(this.queue, event);
    if (!this.posting) this.flush();
  }

  flush() {
    if (!this.live || !this.queue.length) return;
    this.posting = true;
    ++this.sent;
    this.worker?.postMessage({events: JSON.stringify(this.queue.splice(0))});
  }

  /** For the File menu. */
  fontItems() { return fontItems(this); }

  /** Keeps fonts in this browser. The engine is opened anew, with the document as it is. @param {{name: string, blob: Blob}[]} fonts */
  async addFonts(fonts) {
    try {
      for (const {name, blob} of fonts) await keepFont(name.replace(/[^\w.-]/g, '_'), new Uint8Array(await blob.arrayBuffer()));
    } catch {
      return toast('This browser keeps no files here, so the font cannot be used', 'error');
    }
    this.live = false;
    await new Promise(resolve => {
      this.saves.push(() => resolve(undefined));
      this.worker?.postMessage({save: true});
    });
    this.worker?.terminate();
    this.worker = undefined;
    this.workshop?.renew();
    this.open();
    toast(`${fonts.length === 1 ? fonts[0].name : `${fonts.length} styles`} can now be chosen under Font`);
  }

  /** @param {Blob} picture @returns {Promise<string>} its name for an answer */
  async upload(picture) {
    const bytes = new Uint8Array(await picture.arrayBuffer()), ticket = Math.random();
    return new Promise(resolve => {
      this.uploads.set(ticket, resolve);
      this.worker?.postMessage({upload: bytes, ticket}, [bytes.buffer]);
    });
  }
}
