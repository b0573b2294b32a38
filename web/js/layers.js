// SPDX-License-Identifier: MIT
// The dialogs above the main one, each a layer of the page.
import {icon, make, raiseToasts, removeLayer} from './dom.js';

/** @typedef {import('./model.js').Model} Model */
/** @typedef {import('./model.js').Dialog} Dialog */

const kOk = 1, kCancel = 2, kHelp = 9;
/** @type {{[template: number]: string}} */
const kTitles = {9981: 'Tiles', 9994: 'How the texture looks'};

export class Layers {
  /** @param {Model} model @param {import('./help.js').Help} help */
  constructor(model, help) {
    this.model = model;
    this.help = help;
    /** @type {{level: number, element: HTMLDialogElement, before: Element|null}[]} */
    this.open = [];
    /** @type {Promise<typeof import('./editors.js')>|undefined} */
    this.editors = undefined;
  }

  /** The editors' modules, fetched once there is time, or when the first is opened. */
  fetch() { return this.editors ??= import('./editors.js'); }

  /** @param {Dialog} dialog */
  async show(dialog) {
    this.closeFrom(dialog.level);
    const {builderOf} = await this.fetch();
    if (this.model.dialogs[dialog.level - 1] !== dialog) return;  // it has ended meanwhile
    const name = kTitles[dialog.template] || dialog.title;
    const has = (/** @type {number} */ id) => dialog.controls.has(id);
    const post = (/** @type {number} */ id) => () => this.model.post({op: 'click', id}, dialog);
    const close = has(kCancel) ? kCancel : kOk;
    const titleId = `layer-title-${dialog.level}`;
    const element = make('dialog', {class: `layer t${dialog.template}`, 'aria-labelledby': titleId, oncancel: (/** @type {Event} */ event) => {
      event.preventDefault();
      post(close)();
    }},
    make('header', {class: 'layer-head'}, make('h2', {id: titleId}, name),
      has(kHelp) ? make('button', {class: 'quiet', onclick: post(kHelp)}, 'Help') : null,
      make('button', {class: 'icon', 'aria-label': 'Close', onclick: post(close)}, icon('close'))),
    builderOf(dialog.template)(this.model, dialog, this.help),
    make('footer', {class: 'layer-buttons'}, has(kCancel) && has(kOk) ? make('button', {onclick: post(kCancel)}, 'Cancel') : null,
      make('button', {class: 'main ok', onclick: post(has(kOk) ? kOk : kCancel)}, dialog.get(has(kOk) ? kOk : kCancel).label)));
    this.open.push({level: dialog.level, element, before: document.activeElement});
    document.body.append(element);
    element.showModal();
    raiseToasts();
    const first = element.querySelector('.layer-body :is(input, select, button, [tabindex="0"]):not(:disabled)');
    (first || element.querySelector('.ok'))?.focus();
  }

  /** The topic of the manual, above whatever is open. @param {string} topic */
  showHelp(topic) {
    const close = () => removeLayer(element);
    const element = make('dialog', {class: 'layer manual-layer', 'aria-label': 'Help', onclose: close},
      make('header', {class: 'layer-head'}, make('h2', {}, 'Help'), make('button', {class: 'icon', 'aria-label': 'Close', onclick: () => element.close()}, icon('close'))),
      make('div', {class: 'layer-body', tabindex: '0', role: 'region', 'aria-label': 'Help'}, this.help.topic(topic)));
    document.body.append(element);
    element.showModal();
    raiseToasts();
  }

  /** @param {number} level */
  closeFrom(level) {
    while (this.open.length && this.open[this.open.length - 1].level >= level) {
      const {element, before} = /** @type {any} */ (this.open.pop());
      removeLayer(element);
      before?.focus?.();
    }
  }
}
