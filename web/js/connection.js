// SPDX-License-Identifier: MIT
// The line to the program: a stream of messages in, posts of events out. It comes back by itself.

import {queueUp} from './model.js';

/** @typedef {{[key: string]: any}} Json */
/** @typedef {(message: Json, payload: Uint8Array) => void} Receive */

const kSilence = 7000;  // milliseconds without a beat
const kRetry = 400;  // milliseconds after a post that did not get through

/**
 * Whether this tab alone has the session from now on. One that was duplicated has it not; one that is reloaded lets go a moment after it has gone.
 * @param {string} session @returns {Promise<boolean>}
 */
async function hold(session) {
  for (let tries = 0; tries < 8; tries++) {
    const own = await new Promise(resolve => navigator.locks.request(`glyphmotion-${session}`, {ifAvailable: true}, lock => {
      resolve(Boolean(lock));
      return lock && new Promise(() => {});
    }));
    if (own) return true;
    await new Promise(resolve => setTimeout(resolve, 60));
  }
  return false;
}

/** Takes exact numbers of bytes off a stream of chunks. */
class ByteReader {
  /** @param {ReadableStreamDefaultReader<Uint8Array>} reader */
  constructor(reader) {
    this.reader = reader;
    /** @type {Uint8Array[]} */
    this.chunks = [];
    this.have = 0;
  }

  /** @param {number} count @returns {Promise<Uint8Array<ArrayBuffer>>} */
  async take(count) {
    while (this.have < count) {
      const {done, value} = await this.reader.read();
      if (done || !value) throw new Error('the stream has ended');
      this.chunks.push(value);
      this.have += value.length;
    }
    const bytes = new Uint8Array(count);
    for (let at = 0; at < count;) {
      const chunk = this.chunks[0];
      const part = chunk.subarray(0, count - at);
      bytes.set(part, at);
      at += part.length;
      if (part.length === chunk.length) this.chunks.shift();
      else this.chunks[0] = chunk.subarray(part.length);
    }
    this.have -= count;
    return bytes;
  }
}

export class Connection {
  /**
   * @param {Receive} receive
   * @param {(state: 'live'|'lost'|'ended'|'refused', words?: string) => void} changed
   */
  constructor(receive, changed) {
    this.receive = receive;
    this.changed = changed;
    this.token = /^#([0-9a-f]{32})$/.exec(location.hash)?.[1] ?? sessionStorage.getItem('token') ?? '';
    sessionStorage.setItem('token', this.token);
    this.session = sessionStorage.getItem('session') || '';
    /** @type {Json[]} */
    this.queue = [];
    this.posting = false;
    this.live = false;
    this.leaving = false;
    addEventListener('pagehide', () => this.leave());
    addEventListener('pageshow', event => { if (event.persisted) location.reload(); });
  }

  /** @param {string} path @param {RequestInit} [init] */
  call(path, init = {}) {
    return fetch(path, {...init, headers: {'X-Glyphmotion-Token': this.token, ...init.headers}, cache: 'no-store'});
  }

  async start() {
    if (this.session && navigator.locks && !await hold(this.session)) this.session = '';
    for (let wait = 200; !this.leaving; wait = Math.min(wait * 1.6, 3000)) {
      const state = await this.listen();
      if (state === 'refused') return;
      if (this.live) wait = 200;
      this.live = false;
      if (this.leaving) return;
      this.changed('lost');
      await new Promise(resolve => setTimeout(resolve, wait));
    }
  }

  /** One visit: from the session's name to the end of its stream. */
  async listen() {
    const gone = new AbortController();
    let silence = 0;
    try {
      // One answer is both the session and its stream.
      const response = await this.call('/api/session', {method: 'POST', body: JSON.stringify({session: this.session, listen: true}), signal: gone.signal});
      if (response.status === 403) {
        this.changed('refused', 'This address has no key, or an old one. Open the one that the program printed last.');
        return 'refused';
      }
      if (!response.ok) {
        this.changed('refused', (await response.json()).error);
        return 'refused';
      }
      const session = response.headers.get('X-Glyphmotion-Session') ?? '';
      if (!session || !response.body) return 'lost';
      if (session !== this.session) {
        this.queue = [];
        if (navigator.locks) hold(session);
      }
      this.session = session;
      sessionStorage.setItem('session', session);
      const bytes = new ByteReader(response.body.getReader());
      const text = new TextDecoder();
      const listening = () => {
        clearTimeout(silence);
        silence = window.setTimeout(() => gone.abort(), kSilence);
      };
      listening();
      this.live = true;
      this.changed('live');
      for (;;) {
        const head = new DataView((await bytes.take(8)).buffer);
        const json = JSON.parse(text.decode(await bytes.take(head.getUint32(0, true))));
        const payload = await bytes.take(head.getUint32(4, true));
        listening();
        this.receive(json, payload);
      }
    } catch (error) {
      if (!(error instanceof TypeError || error instanceof DOMException || `${error}`.includes('stream'))) throw error;
      return 'lost';
    } finally {
      clearTimeout(silence);
      gone.abort();
    }
  }

  /** Posts an event; returns at once. @param {Json} event */
  post(event) {
    queueUp(this.queue, event);
    if (!this.posting) this.flush();
  }

  async flush() {
    if (this.posting) return;
    this.posting = true;
    await Promise.resolve();
    while (this.queue.length && this.live) {
      const events = this.queue.splice(0), {session} = this;
      try {
        await this.call(`/api/events?session=${this.session}`, {method: 'POST', body: JSON.stringify(events)});
      } catch {  // the stream may live on
        if (session === this.session) this.queue.unshift(...events);
        await new Promise(resolve => setTimeout(resolve, kRetry));
      }
    }
    this.posting = false;
  }

  /** The program has the system's fonts, and takes no others. @type {((fonts: {name: string, blob: Blob}[]) => Promise<void>)|undefined} */
  addFonts;
  /** @type {(() => import('./menu.js').Item[])|undefined} for the File menu */
  fontItems;

  /** @param {Blob} picture @returns {Promise<string>} its name for an answer */
  async upload(picture) {
    const response = await this.call(`/api/upload?session=${this.session}`, {method: 'POST', body: picture});
    return response.ok ? (await response.json()).upload : '';
  }

  leave() {
    this.leaving = true;
    this.call(`/api/leave?session=${this.session}`, {method: 'POST', keepalive: true}).catch(() => {});
  }
}
