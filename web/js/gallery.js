// SPDX-License-Identifier: MIT
// The effects and the looks as pictures of the person's own text, which play when pointed at.
import {byId, make, roam} from './dom.js';
import {Animation, Player} from './player.js';

const kPause = 900;  // milliseconds after the last change
const kWidth = 150, kHeight = 66;

/** The first word or two. @param {string} text */
function shortText(text) {
  const words = [...text.trim().split(/\s+/)];
  let short = words.shift() || '';
  while (words.length && short.length + words[0].length < 9) short += ` ${words.shift()}`;
  return [...short].slice(0, 12).join('');
}

class Tile {
  /** @param {string} name @param {() => void} choose @param {boolean} radio */
  constructor(name, choose, radio) {
    this.canvas = make('canvas', {width: kWidth, height: kHeight, 'aria-hidden': 'true'});
    this.element = make('button', {class: 'tile', ...(radio ? {role: 'radio', 'aria-checked': 'false'} : {}),
      onclick: choose, onpointerenter: () => this.play(), onpointerleave: () => this.rest(), onfocus: () => this.play(), onblur: () => this.rest()},
    make('span', {class: 'shot'}, this.canvas), make('span', {class: 'caption'}, name));
    this.player = new Player(this.canvas);
    this.poster = 0;  // frame
  }

  /** @param {any} message @param {Uint8Array} payload */
  show(message, payload) {
    const animation = new Animation(message, payload);
    this.poster = animation.poster();
    this.player.show(animation, this.poster);
    const first = animation.picture(0).data;
    this.canvas.parentElement.style.background = first[3] ? `rgb(${first[0]} ${first[1]} ${first[2]})` : '';
    this.element.classList.add('ready');
  }

  play() {
    if (!this.player.animation || matchMedia('(prefers-reduced-motion: reduce)').matches) return;
    this.player.step(0);
    this.player.play();
  }

  rest() {
    this.player.pause();
    if (this.player.animation) this.player.step(this.poster);
  }
}

export class Gallery {
  /** @param {import('./model.js').Model} model */
  constructor(model) {
    this.model = model;
    /** @type {Tile[]} */
    this.effects = [];
    /** @type {Map<string, Tile>} */
    this.looks = new Map();
    this.wanted = '';
    this.text = '';
    /** @type {Map<string, string>}  the text that a look's picture shows */
    this.lookTexts = new Map();
    this.timer = 0;
    this.current = -1;
    this.keep = byId('keep');
    this.keep.addEventListener('change', () => this.refresh(0));
  }

  /** @param {any} hello */
  begin(hello) {
    if (this.effects.length) return;
    this.effects = hello.effects.map((/** @type {string} */ name, /** @type {number} */ index) => new Tile(name, () => this.choose(index), true));
    byId('effects').replaceChildren(...this.effects.map(tile => tile.element));
    roam(byId('effects'), index => this.choose(index));
    for (const look of hello.looks) {
      const tile = new Tile(look.name, () => this.model.post({op: 'apply', look: look.name}), false);
      tile.element.title = look.about;
      this.looks.set(look.name, tile);
    }
    byId('looks').replaceChildren(...[...this.looks.values()].map(tile => tile.element));
    roam(byId('looks'));
    byId('looks-shelf').hidden = this.looks.size === 0;
  }

  /** @param {number} index */
  choose(index) {
    this.model.post({op: 'effect', index, keep: this.keep.checked}, this.model.main);
  }

  /** @param {any} message  of type document */
  follow(message) {
    const index = this.model.hello.effects.indexOf(message.effect);
    if (index !== this.current) {
      this.effects.forEach((tile, i) => {
        tile.element.setAttribute('aria-checked', String(i === index));
        tile.element.tabIndex = i === index ? 0 : -1;
      });
      this.current = index;
    }
    this.refresh(kPause);
  }

  /** Asks for new pictures a little after the last change. @param {number} pause */
  refresh(pause) {
    clearTimeout(this.timer);
    this.timer = window.setTimeout(() => this.ask(), this.wanted ? pause : 50);
  }

  ask() {
    const text = shortText(this.model.document.text || '') || 'Text';
    const key = `${this.model.document.revision}`;
    this.wanted = key;
    this.text = text;
    const order = this.effects.map((_, i) => i).sort((a, b) => Number(b === this.current) - Number(a === this.current));
    this.model.post({op: 'thumbs', key, width: kWidth, height: kHeight, text, keep: this.keep.checked, effects: order,
      looks: [...this.looks.keys()].filter(name => this.lookTexts.get(name) !== text)}, this.model.main);
  }

  /** @param {any} message  of type thumb @param {Uint8Array} payload */
  show(message, payload) {
    const tile = message.look === undefined ? this.effects[message.effect] : this.looks.get(message.look);
    if (message.look !== undefined && message.key === this.wanted) this.lookTexts.set(message.look, this.text);
    if (tile) tile.show(message, payload);
  }
}
