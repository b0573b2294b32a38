// SPDX-License-Identifier: MIT
// The page as it begins: the words, the picture, and the line that the program's messages come on. The workbench, which has
// everything else, is fetched once the first picture shows.
import {connection, listen} from './line.js';
import {Dialog, Model} from './model.js';
import {Stage} from './stage.js';
import {TextField} from './text_field.js';
import {byId} from './dom.js';

const model = new Model(connection);
const stage = new Stage(byId('stage'));
const text = new TextField(model, byId('text'));
/** @type {import('./workbench.js').Workbench|undefined} */
let workbench;
/** @type {Promise<void>|undefined} */
let fetched;
/** @type {[any, Uint8Array][]} what came before the workbench */
const early = [];

/** @type {{[type: string]: (message: any, payload: Uint8Array) => void}} */
const kHandlers = {
  hello(message) {
    model.dialogs = [];
    model.hello = message;
  },
  lists(message) { Object.assign(model.hello, message); },
  dialog(message) {
    model.dialogs.length = message.level - 1;
    model.dialogs.push(new Dialog(message));
    if (message.level > 1) return complete();
    text.attach(model.main);
    document.body.classList.add('shown');
  },
  changes(message) { model.dialogs[message.level - 1]?.change(message); },
  ended(message) { model.dialogs.length = Math.min(model.dialogs.length, message.level - 1); },
  face(message, payload) { model.dialogs[message.level - 1]?.faces.get(`${message.id}/${message.item ?? -1}`)?.(message, payload); },
  still(message, payload) {
    stage.still(message, payload);
    // The task after a frame's callbacks runs once that frame is painted.
    if (!fetched) requestAnimationFrame(() => setTimeout(complete));
  },
  build(message, payload) { stage.built(message, payload); },
  document(message) {
    model.document = message;
    stage.expect(message.revision);
  },
  ask() { complete(); },
  file(message, payload) {
    const waiting = model.files.get(message.for);
    model.files.delete(message.for);
    waiting?.(message, payload);
  },
};

/** @param {any} message @param {Uint8Array} payload */
function receive(message, payload) {
  if (!model.hello && message.type !== 'hello') return;  // of a session that goes on; its snapshot follows
  kHandlers[message.type]?.(message, payload);
  if (workbench) workbench.receive(message, payload);
  else early.push([message, payload]);
}

/** @param {'live'|'lost'|'ended'|'refused'} state @param {string} [words] */
function changed(state, words) {
  const banner = byId('banner');
  banner.hidden = state === 'live';
  document.body.classList.toggle('lost', state !== 'live');
  banner.textContent = words || (state === 'lost' ? 'The program does not answer. Your work is kept; this page goes on as soon as it is back.' : '');
  if (state === 'live') connection.flush();
  else model.dropRequests();
}

/** Fetches what a page does without until it is usable. */
function complete() {
  fetched ??= fetchWorkbench();
}

async function fetchWorkbench() {
  performance.mark('ready');
  const loaded = await import('./workbench.js').catch(() => undefined);
  if (!loaded) {  // the program has gone; when it is back, its first picture asks again
    fetched = undefined;
    return;
  }
  const made = new loaded.Workbench(model, stage);
  for (const [message, payload] of early.splice(0)) made.receive(message, payload);
  workbench = made;
  document.body.classList.add('ready');
  await made.complete();
}

Object.assign(window, {glyphmotion: model});  // for the browser's tests and for the curious
listen({receive, changed});
