// SPDX-License-Identifier: MIT
// Everything around the words and the picture: options, galleries, files, editors, questions.
import {Asks} from './asks.js';
import {Drops} from './drops.js';
import {FontFile} from './font_file.js';
import {Gallery} from './gallery.js';
import {Header} from './header.js';
import {Help} from './help.js';
import {Layers} from './layers.js';
import {Options} from './options.js';
import {PictureOptions} from './picture_options.js';
import {byId, sentence, toast} from './dom.js';

export class Workbench {
  /** @param {import('./model.js').Model} model @param {import('./stage.js').Stage} stage */
  constructor(model, stage) {
    this.model = model;
    this.help = new Help();
    this.gallery = new Gallery(model);
    this.picture = new PictureOptions(model);
    this.font = new FontFile(model);
    this.options = new Options(model, byId('options'), this.help, this.picture, this.font);
    this.header = new Header(model, stage);
    this.layers = new Layers(model, this.help);
    this.asks = new Asks(model);
    this.drops = new Drops(model, this.asks, this.font);
    this.offered = false;
  }

  /** After the model has taken it. @param {any} message @param {Uint8Array} payload */
  receive(message, payload) {
    switch (message.type) {
      case 'hello':
        this.layers.closeFrom(2);
        this.asks.settle();
        this.gallery.begin(message);
        return this.offerRescued();
      case 'dialog': {
        const dialog = this.model.dialogs[message.level - 1];
        if (!dialog) return;  // it has ended meanwhile
        return message.level > 1 ? void this.layers.show(dialog) : this.options.render();
      }
      case 'options': return this.picture.take(message.options);
      case 'changes': return message.level === 1 ? this.options.follow() : undefined;
      case 'ended': return this.layers.closeFrom(message.level);
      case 'thumb': return this.gallery.show(message, payload);
      case 'document':
        this.header.follow(message);
        this.gallery.follow(message);
        return this.font.follow(message);
      case 'ask': return void this.asks.show(message);
      case 'answered': return this.asks.settle();
      case 'notice': return toast(sentence(message.text), message.kind);
      case 'help': return this.layers.showHelp(message.topic);
    }
  }

  /** Fetches what there is time for. */
  async complete() {
    this.layers.fetch();
    await this.help.load(this.model.connection);
    if (this.model.main) this.options.render();
  }

  /** Documents that a crash has left, once a visit. */
  offerRescued() {
    if (this.offered) return;
    this.offered = true;
    const {model} = this;
    for (const each of model.hello.rescued.slice(0, 3)) {
      toast(`“${each.text}” was not saved.`, 'info', [
        {text: 'Open it', action: () => model.post({op: 'rescue', key: each.key, keep: true}, model.main)},
        {text: 'Forget it', action: () => model.post({op: 'rescue', key: each.key, keep: false}, model.main)}]);
    }
  }
}
