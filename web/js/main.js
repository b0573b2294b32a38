// SPDX-License-Identifier: MIT
// The page: wires the parts to the line that the program's messages come on.
import {Asks} from './asks.js';
import {Drops} from './drops.js';
import {FontFile} from './font_file.js';
import {Gallery} from './gallery.js';
import {Header} from './header.js';
import {Help} from './help.js';
import {Layers} from './layers.js';
import {connection, listen} from './line.js';
import {Dialog, Model} from './model.js';
import {Options} from './options.js';
import {PictureOptions} from './picture_options.js';
import {Stage} from './stage.js';
import {TextField} from './text_field.js';
import {byId} from './dom.js';
import {toast} from './toast.js';

const model = new Model(connection);
const help = new Help();
const stage = new Stage(byId('stage'));
const gallery = new Gallery(model);
const picture = new PictureOptions(model);
const font = new FontFile(model);
const options = new Options(model, byId('options'), help, picture, font);
const header = new Header(model, stage);
const layers = new Layers(model, help);
const asks = new Asks(model);
const text = new TextField(model, byId('text'));
new Drops(model, asks, font);
let offered = false, usable = false;

/** @type {{[type: string]: (message: any, payload: Uint8Array) => void}} */
const kHandlers = {
  hello(message) {
    layers.closeFrom(2);
    asks.settle();
    model.dialogs = [];
    model.hello = message;
    gallery.begin(message);
    offerRescued();
  },
  lists(message) { Object.assign(model.hello, message); },
  dialog(message) {
    const dialog = new Dialog(message);
    model.dialogs.length = message.level - 1;
    model.dialogs.push(dialog);
    if (message.level > 1) return layers.show(dialog);
    options.render();
    text.attach(dialog);
    document.body.classList.add('ready');
  },
  options(message) { picture.take(message.options); },
  changes(message) {
    model.dialogs[message.level - 1]?.change(message);
    if (message.level === 1) options.follow();
  },
  ended(message) {
    model.dialogs.length = Math.min(model.dialogs.length, message.level - 1);
    layers.closeFrom(message.level);
  },
  face(message, payload) { model.dialogs[message.level - 1]?.faces.get(`${message.id}/${message.item ?? -1}`)?.(message, payload); },
  still(message, payload) {
    stage.still(message, payload);
    // The task after a frame's callbacks runs once that frame is painted.
    if (!usable) requestAnimationFrame(() => setTimeout(complete));
    usable = true;
  },
  build(message, payload) { stage.built(message, payload); },
  thumb(message, payload) { gallery.show(message, payload); },
  document(message) {
    model.document = message;
    header.follow(message);
    gallery.follow(message);
    font.follow(message);
  },
  ask(message) { asks.show(message); },
  answered() { asks.settle(); },
  notice(message) { toast(message.text, message.kind); },
  help(message) { layers.showHelp(message.topic); },
  file(message, payload) {
    const waiting = model.files.get(message.for);
    model.files.delete(message.for);
    waiting?.(message, payload);
  },
  beat() {},
};

/** @param {any} message @param {Uint8Array} payload */
function receive(message, payload) {
  if (!model.hello && message.type !== 'hello') return;  // of a session that goes on; its snapshot follows
  kHandlers[message.type]?.(message, payload);
}

/** @param {'live'|'lost'|'ended'|'refused'} state @param {string} [words] */
function changed(state, words) {
  const banner = byId('banner');
  banner.hidden = state === 'live';
  document.body.classList.toggle('lost', state !== 'live');
  banner.textContent = words || (state === 'lost' ? 'The program does not answer. Your work is kept; this page goes on as soon as it is back.' : '');
  if (state === 'live') connection.flush();
}

/** Fetches what a page does without until it is usable. */
async function complete() {
  performance.mark('ready');
  layers.fetch();
  await help.load(connection);
  if (model.main) options.render();
}

/** Documents that a crash has left, once a visit. */
function offerRescued() {
  if (offered) return;
  offered = true;
  for (const each of model.hello.rescued.slice(0, 3)) {
    toast(`“${each.text}” was not saved.`, 'info', [
      {text: 'Open it', action: () => model.post({op: 'rescue', key: each.key, keep: true}, model.main)},
      {text: 'Forget it', action: () => model.post({op: 'rescue', key: each.key, keep: false}, model.main)}]);
  }
}

Object.assign(window, {glyphmotion: model});  // for the browser's tests and for the curious
listen({receive, changed});
