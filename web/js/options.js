// SPDX-License-Identifier: MIT
// The options of the main dialog, in sections. What there is, its names and its ranges come with the dialog.
import {checkBox, rowOf} from './controls.js';
import {icon, make, roam} from './dom.js';
import {isOfPalette, paletteRow} from './picture_options.js';

/** @typedef {import('./model.js').Model} Model */
/** @typedef {import('./model.js').Facts} Facts */

const kEffect = 58;
/** Names that read better without their dialog around them. @type {{[label: string]: string}} */
const kNames = {Antialias: 'Smooth edges', Pad: 'Padding', 'Character space': 'Spacing', Delay: 'Delay, 1/100\u00a0s', Pause: 'Pause, 1/100\u00a0s'};
const kPlainTitle = {letters: 'Letters', timing: 'Timing', output: 'Colors and file'};

/** A fountain as CSS. @param {{start: string, end: string, loop: boolean, markers: [number, string][]}} fountain */
function gradientOf({start, end, loop, markers}) {
  const stops = [`${start} 0%`, ...markers.map(([position, colour]) => `${colour} ${position / 2.55}%`), `${loop ? start : end} 100%`];
  return `linear-gradient(90deg, ${stops.join(', ')})`;
}

export class Options {
  /** @param {Model} model @param {HTMLElement} place @param {import('./help.js').Help} help @param {import('./picture_options.js').PictureOptions} picture @param {import('./font_file.js').FontFile} font */
  constructor(model, place, help, picture, font) {
    this.model = model;
    this.place = place;
    this.help = help;
    this.picture = picture;
    this.font = font;
    this.effect = -1;
  }

  /** After a new dialog, and when another effect's options show. */
  render() {
    const dialog = this.model.main;
    const effect = dialog.get(kEffect).selection ?? 0;
    const scroll = this.place.scrollTop;
    this.effect = effect;
    this.picture.begin();
    const own = dialog.order.filter(facts => facts.effect === effect);
    const general = dialog.order.filter(facts => facts.effect === undefined);
    const output = general.filter(facts => !isOfPalette(facts.id));
    const of = (/** @type {Facts[]} */ list, /** @type {string} */ section) => list.filter(facts => facts.section === section && facts.kind !== 'paragraph');
    this.place.replaceChildren(...[
      this.section('letters', kPlainTitle.letters, of(general, 'letters')),
      this.section('effect', this.model.hello.effects[effect], of(own, 'effect'), this.help.effect(this.model.hello.effects[effect])),
      this.fill(of(own, 'fill')),
      this.shadow(of(own, 'shadow')),
      this.outline(of(own, 'outline')),
      this.background(of(own, 'background')),
      this.frame('canvas', 'Canvas and lines', [...this.picture.rows('canvas'), ...this.picture.rows('lines')]),
      this.section('timing', kPlainTitle.timing, of(general, 'timing')),
      this.section('output', kPlainTitle.output, of(output, 'output'), '', true, [paletteRow(this.model, this.picture), ...this.picture.rows('file')]),
    ].filter(section => section));
    this.place.querySelector('.letters .row')?.after(this.font.row);
    this.place.scrollTop = scroll;
  }

  follow() {
    const dialog = this.model.main;
    if (dialog && dialog.get(kEffect).selection !== this.effect) this.render();
  }

  /** @param {Facts} facts */
  row(facts, extra = /** @type {Node|null} */ (null)) {
    const dialog = this.model.main;
    const caption = Object.keys(kNames).find(name => kNames[name] === facts.label) ?? facts.label;
    if (kNames[caption]) facts.label = kNames[caption];
    return rowOf(this.model, dialog, facts.id, this.help.option(this.model.hello.effects[this.effect], caption), extra);
  }

  /**
   * @param {string} name @param {string} title @param {(Node|null)[]} children
   * @param {Node|null} [beside] @param {string} [words] @param {boolean} [closed]
   */
  frame(name, title, children, beside = null, words = '', closed = false) {
    if (!children.some(child => child)) return null;
    const open = (localStorage.getItem(`open-${name}`) ?? (closed ? '0' : '1')) === '1';
    const section = make('details', {class: `section ${name}`, open: open,
      ontoggle: () => localStorage.setItem(`open-${name}`, section.open ? '1' : '0')},
    make('summary', {}, make('h2', {}, title), icon('down')), make('div', {class: 'rows'}, beside, words ? make('p', {class: 'about'}, words) : null, ...children));
    return section;
  }

  /** Colors and checks gather at the end; an Enable check joins the colour before it. @param {string} name @param {string} title @param {Facts[]} list */
  section(name, title, list, words = '', closed = false, more = /** @type {HTMLElement[]} */ ([])) {
    const dialog = this.model.main;
    /** @type {Node[]} */
    const rows = [];
    /** @type {Node[]} */
    const checks = [];
    /** @type {Node[]} */
    const colours = [];
    list.forEach((facts, i) => {
      if (facts.kind === 'check' && /^Enable$/i.test(facts.label)) return;
      if (facts.kind === 'check') {
        if (facts.enabled || name !== 'output') checks.push(checkBox(this.model, dialog, facts.id, this.help.option(title, facts.label), kNames[facts.label]));
        return;
      }
      const next = list[i + 1];
      const enable = next && next.kind === 'check' && /^Enable$/i.test(next.label)
        ? checkBox(this.model, dialog, next.id, `Whether ${facts.label.toLowerCase()} takes part`, 'On') : null;
      const row = this.row(facts, enable);
      if (row) (facts.kind === 'colour' ? colours : rows).push(row);
    });
    rows.push(...colours);
    if (checks.length) rows.push(make('div', {class: 'checks'}, ...checks));
    return this.frame(name, title, [...rows, ...more], null, words, closed);
  }

  /** @param {Facts[]} list */
  fill(list) {
    const chips = make('div', {class: 'chips', role: 'toolbar', 'aria-label': 'Ready fills'}, ...this.model.hello.fountains.map((/** @type {any} */ each) => {
      const chip = make('button', {class: 'chip', title: each.name, 'aria-label': each.name, onclick: () => this.model.post({op: 'fill', role: 'fill', name: each.name}, this.model.main)});
      chip.style.background = gradientOf(each);
      return chip;
    }));
    roam(chips);
    const [material, ...rest] = list.map(facts => this.row(facts));
    return material ? this.frame('fill', 'Fill', [material, chips, ...rest]) : null;
  }

  /** @param {Facts[]} list */
  background(list) {
    return this.frame('background', 'Background', list.map(facts => this.row(facts)));
  }

  /** What is off shows no options. @param {string} name @param {string} title @param {Facts[]} list */
  switched(name, title, list) {
    const dialog = this.model.main;
    const enable = list.find(facts => facts.kind === 'check');
    const body = make('div', {class: 'rows inner'}, ...list.filter(facts => facts !== enable).map(facts => this.row(facts)));
    if (!enable) return this.frame(name, title, list.length ? [body] : []);
    const box = checkBox(this.model, dialog, enable.id, '', `${title} on`);
    box.classList.add('switch');
    dialog.watch(enable.id, now => { body.hidden = !now.check; });
    return this.frame(name, title, [body], box);
  }

  /** @param {Facts[]} list */
  shadow(list) {
    for (const facts of list) if (facts.kind !== 'material') facts.label = facts.label.replace(/^Shadow (.)/, (_, letter) => letter.toUpperCase());
    return this.switched('shadow', 'Shadow', list);
  }

  /** @param {Facts[]} list */
  outline(list) { return this.switched('outline', 'Outline', list); }
}
