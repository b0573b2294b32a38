// SPDX-License-Identifier: MIT
// What the page knows of the open dialogs: the controls' facts as they were sent, who shows them, and events that wait for the line to the program.

/**
 * A control, as docs/page-protocol.md lists it.
 * @typedef {object} Facts
 * @property {number} id
 * @property {string} kind
 * @property {string} label
 * @property {boolean} visible
 * @property {boolean} enabled
 * @property {number[]} place
 * @property {string} [section]
 * @property {number} [effect]
 * @property {string} [text]
 * @property {number[]} [range]
 * @property {number} [limit]
 * @property {boolean} [check]
 * @property {string[]} [items]
 * @property {number} [selection]
 * @property {string} [colour]
 * @property {{kind: number, colour: string, average: string}} [material]
 * @property {{start: string, end: string, loop: boolean, markers: [number, string][]}} [fountain]
 * @property {number} [index]
 * @property {boolean} [pressed]
 * @property {boolean} [default]
 */

/** One open dialog. */
export class Dialog {
  /** @param {any} message  a message of type dialog */
  constructor(message) {
    this.level = message.level;
    this.template = message.template;
    this.title = message.title;
    this.focus = message.focus;
    /** @type {Map<number, Facts>} */
    this.controls = new Map();
    /** @type {Facts[]} in the order of the dialog */
    this.order = message.controls;
    for (const facts of message.controls) if (facts.id > 0 && !this.controls.has(facts.id)) this.controls.set(facts.id, facts);
    /** @type {Map<number, Set<(facts: Facts) => void>>} */
    this.watchers = new Map();
    /** @type {Map<string, (message: any, payload: Uint8Array) => void>} */
    this.faces = new Map();
    /** @type {Set<(ids: number[]) => void>} */
    this.listeners = new Set();
  }

  /** @param {number} id @returns {Facts} */
  get(id) {
    return /** @type {Facts} */ (this.controls.get(id));
  }

  /**
   * Calls `show` now and after each change of the control.
   * @param {number} id @param {(facts: Facts) => void} show
   */
  watch(id, show) {
    if (!this.watchers.has(id)) this.watchers.set(id, new Set());
    /** @type {Set<(facts: Facts) => void>} */ (this.watchers.get(id)).add(show);
    const facts = this.controls.get(id);
    if (facts) show(facts);
  }

  /** @param {any} message  of type changes */
  change(message) {
    if (message.title !== undefined) this.title = message.title;
    if (message.focus !== undefined) this.focus = message.focus;
    const ids = [];
    for (const difference of message.controls) {
      const facts = this.controls.get(difference.id);
      if (!facts) continue;
      Object.assign(facts, difference);
      ids.push(facts.id);
      for (const show of this.watchers.get(facts.id) || []) show(facts);
    }
    for (const listener of this.listeners) listener(ids);
  }
}

/** The page's state; nothing else on it is global. */
export class Model {
  /** @param {import('./connection.js').Connection} connection */
  constructor(connection) {
    this.connection = connection;
    /** @type {Dialog[]} */
    this.dialogs = [];
    /** @type {any} the last message of type hello */
    this.hello = null;
    /** @type {any} the last message of type document */
    this.document = {};
    /** @type {Map<string, (message: any, payload: Uint8Array) => void>} waiting for files, by tag */
    this.files = new Map();
  }

  get main() { return this.dialogs[0]; }
  get top() { return this.dialogs[this.dialogs.length - 1]; }

  /** @param {{[key: string]: any}} event @param {Dialog} [dialog] */
  post(event, dialog) {
    this.connection.post(dialog ? {...event, level: dialog.level} : event);
  }

  /**
   * Asks for a file and gives its message.
   * @param {{[key: string]: any}} event
   * @returns {Promise<{message: any, payload: Uint8Array}>}
   */
  request(event) {
    const tag = `file${Math.random().toString(36).slice(2)}`;
    return new Promise(resolve => {
      this.files.set(tag, (message, payload) => resolve({message, payload}));
      this.post({...event, tag});
    });
  }

  /** What was asked for before the line was cut does not come any more: its answer may be lost. */
  dropRequests() {
    const {queue} = this.connection, files = [...this.files.values()];
    if (queue) this.connection.queue = queue.filter(event => !this.files.has(event.tag));
    this.files.clear();
    for (const answer of files) answer({error: 'the line to the program was cut before the file came; ask for it once more'}, new Uint8Array());
  }
}

/**
 * Adds an event. Moves of the pointer and steps of one slider that wait are replaced by the next.
 * @param {{[key: string]: any}[]} queue @param {{[key: string]: any}} event
 */
export function queueUp(queue, event) {
  const last = queue[queue.length - 1];
  const follows = last && last.op === event.op && last.id === event.id && last.level === event.level &&
      (event.op === 'type' || (event.op === 'mouse' && event.what === 'move' && last.what === 'move') ||
       (event.op === 'colour' && last.index === event.index) || (event.op === 'face' && last.item === event.item));
  if (follows) queue[queue.length - 1] = event;
  else queue.push(event);
}
