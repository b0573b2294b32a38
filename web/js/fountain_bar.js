// SPDX-License-Identifier: MIT
// The bar of a fountain with its colours as handles: dragged by mouse, touched, or moved by keys.
import {clamp, make} from './dom.js';
import {colourField, faceOf} from './controls.js';

/** @typedef {import('./model.js').Model} Model */
/** @typedef {import('./model.js').Dialog} Dialog */

const kStart = -1, kEnd = -2, kPullOff = 46;

/** @param {string} a @param {string} b @param {number} share */
function between(a, b, share) {
  const part = (/** @type {string} */ colour, /** @type {number} */ i) => parseInt(colour.slice(1 + 2 * i, 3 + 2 * i), 16);
  return `#${[0, 1, 2].map(i => Math.round(part(a, i) + (part(b, i) - part(a, i)) * share).toString(16).padStart(2, '0')).join('')}`;
}

export class FountainBar {
  /** @param {Model} model @param {Dialog} dialog @param {number} id */
  constructor(model, dialog, id) {
    this.model = model;
    this.dialog = dialog;
    this.id = id;
    this.chosen = kStart;
    this.dragged = -100;
    this.handles = make('div', {class: 'handles'});
    this.bar = make('div', {class: 'fountain-strip', ondblclick: (/** @type {MouseEvent} */ event) => this.add(this.positionAt(event)), 
      oncontextmenu: (/** @type {MouseEvent} */ event) => { event.preventDefault(); this.menu(-1); }}, faceOf(model, dialog, id, {className: 'fountain-face'}));
    this.colour = colourField('Color of the marker', value => this.post({op: 'colour', id, index: this.chosen, value}));
    this.remove = make('button', {class: 'quiet', onclick: () => this.delete(this.chosen)}, 'Remove');
    this.place = make('output', {class: 'marker-place'});
    this.element = make('div', {class: 'fountain', role: 'group', 'aria-label': 'Fountain'}, this.handles, this.bar,
      make('div', {class: 'marker-tools'}, this.colour.element, this.place,
        make('button', {class: 'quiet', onclick: () => this.addBeside()}, 'Add a color'), this.remove,
        make('button', {class: 'quiet library', onclick: () => this.menu(-1)}, 'Library…')));
    dialog.watch(id, facts => this.show(facts));
  }

  /** @param {{[key: string]: any}} event */
  post(event) { this.model.post(event, this.dialog); }

  /** @param {MouseEvent} event */
  positionAt(event) {
    const box = this.handles.getBoundingClientRect();
    return clamp(Math.round((event.clientX - box.left) * 255 / box.width), 1, 255);
  }

  /** Start, markers and end from left to right. */
  stops() {
    const {fountain} = this.facts;
    return [{index: kStart, position: 0, colour: fountain.start},
      ...fountain.markers.map((/** @type {[number, string]} */ [position, colour], /** @type {number} */ index) => ({index, position, colour})),
      {index: kEnd, position: 255, colour: fountain.loop ? fountain.start : fountain.end}];
  }

  /** @param {any} facts */
  show(facts) {
    this.facts = facts;
    this.element.classList.toggle('off', !facts.enabled);
    const focused = this.handles.contains(document.activeElement) || document.activeElement === this.remove;
    const stops = this.stops();
    if (this.chosen >= facts.fountain.markers.length) this.chosen = kStart;
    if (this.handles.children.length !== stops.length) this.handles.replaceChildren(...stops.map(stop => this.handle(stop.index)));
    stops.forEach((stop, i) => {
      const element = /** @type {HTMLElement} */ (this.handles.children[i]);
      element.dataset.index = String(stop.index);
      element.style.left = `${stop.position * 100 / 255}%`;
      element.style.setProperty('--colour', stop.colour);
      element.setAttribute('aria-valuenow', String(stop.position));
      element.setAttribute('aria-valuetext', `${stop.position}, ${stop.colour}`);
      element.setAttribute('aria-label', stop.index === kStart ? 'Start color' : stop.index === kEnd ? 'End color' : `Color ${stop.index + 2}`);
      element.setAttribute('aria-disabled', String(!facts.enabled));
      element.tabIndex = facts.enabled ? 0 : -1;
      element.classList.toggle('chosen', stop.index === this.chosen);
    });
    const chosen = stops.find(stop => stop.index === this.chosen) || stops[0];
    this.colour.show(chosen.colour, facts.enabled);
    this.remove.disabled = chosen.index < 0 || !facts.enabled;
    this.place.textContent = `at ${chosen.position}`;
    if (focused && (this.remove.disabled || document.activeElement !== this.remove) && !this.handles.contains(document.activeElement)) {
      /** @type {HTMLElement} */ (this.handles.children[stops.indexOf(chosen)]).focus();
    }
  }

  /** @param {number} index */
  choose(index) {
    this.chosen = index;
    this.show(this.facts);
  }

  /** @param {number} first */
  handle(first) {
    const element = make('div', {class: 'marker', role: 'slider', 'aria-valuemin': 0, 'aria-valuemax': 255, 'data-index': first});
    const index = () => Number(element.dataset.index);
    element.addEventListener('focus', () => this.choose(index()));
    element.addEventListener('pointerdown', (/** @type {PointerEvent} */ event) => {
      if (event.button !== 0 || !this.facts.enabled) return;
      element.setPointerCapture(event.pointerId);
      element.focus();
      this.choose(index());
      this.dragged = index();
    });
    element.addEventListener('pointermove', (/** @type {PointerEvent} */ event) => {
      if (this.dragged < 0) return;
      const box = this.bar.getBoundingClientRect();
      const off = event.clientY < box.top - kPullOff - 20 || event.clientY > box.bottom + kPullOff;
      element.classList.toggle('leaving', off);
      if (!off) this.move(this.dragged, this.positionAt(event));
    });
    element.addEventListener('pointerup', () => {
      if (this.dragged >= 0 && element.classList.contains('leaving')) this.delete(this.dragged);
      element.classList.remove('leaving');
      this.dragged = -100;
    });
    element.addEventListener('pointercancel', () => {
      element.classList.remove('leaving');
      this.dragged = -100;
    });
    element.addEventListener('dblclick', (/** @type {MouseEvent} */ event) => {
      event.stopPropagation();
      /** @type {any} */ (this.colour.element.querySelector('input[type=color]')).click();
    });
    element.addEventListener('contextmenu', (/** @type {MouseEvent} */ event) => {
      event.preventDefault();
      event.stopPropagation();
      if (index() >= 0) this.menu(index());
    });
    element.addEventListener('keydown', (/** @type {KeyboardEvent} */ event) => this.key(event, index()));
    return element;
  }

  /** @param {KeyboardEvent} event @param {number} index */
  key(event, index) {
    const steps = {ArrowLeft: -1, ArrowDown: -1, ArrowRight: 1, ArrowUp: 1, PageDown: -16, PageUp: 16}[event.key];
    const position = index >= 0 ? this.facts.fountain.markers[index][0] : 0;
    if (steps !== undefined && index >= 0) this.move(index, position + steps, Math.sign(steps));
    else if (event.key === 'Delete' || event.key === 'Backspace') this.delete(index);
    else if (event.key === 'Insert' || event.key === '+') this.addBeside();
    else if (event.key === 'Enter' || event.key === ' ') /** @type {any} */ (this.colour.element.querySelector('.hex')).focus();
    else return;
    event.preventDefault();
  }

  /** To the next free position in that direction. @param {number} index @param {number} wanted @param {number} [direction] */
  move(index, wanted, direction = 0) {
    const taken = new Set(this.facts.fountain.markers.map((/** @type {[number, string]} */ [position]) => position));
    let position = clamp(wanted, 1, 255);
    const old = this.facts.fountain.markers[index][0];
    if (position === old) return;
    while (direction && taken.has(position) && position > 1 && position < 255) position += direction;
    if (taken.has(position)) return;
    this.post({op: 'marker', id: this.id, do: 'move', index, position});
    // Its index among the others, so that the next step finds it.
    const to = this.facts.fountain.markers.filter((/** @type {[number, string]} */ [each], /** @type {number} */ i) => i !== index && each < position).length;
    const [moved] = this.facts.fountain.markers.splice(index, 1);
    moved[0] = position;
    this.facts.fountain.markers.splice(to, 0, moved);
    const elements = [...this.handles.children];
    const [element] = elements.splice(index + 1, 1);
    elements.splice(to + 1, 0, element);
    if (to !== index) this.reorder(elements, element);
    if (this.dragged >= 0) this.dragged = to;
    this.chosen = to;
    this.show(this.facts);
  }

  /** Puts the elements into order around the one that has the pointer. @param {Element[]} elements @param {Element} kept */
  reorder(elements, kept) {
    const at = elements.indexOf(kept);
    elements.slice(0, at).forEach(element => this.handles.insertBefore(element, kept));
    elements.slice(at + 1).forEach(element => this.handles.append(element));
  }

  /** @param {number} position */
  add(position) {
    const stops = this.stops();
    const right = Math.max(stops.findIndex(stop => stop.position >= position), 1);
    const low = stops[right - 1], high = stops[right];
    const value = between(low.colour, high.colour, (position - low.position) / Math.max(high.position - low.position, 1));
    this.post({op: 'marker', id: this.id, do: 'add', position, value});
    this.chosen = right - 1;
  }

  addBeside() {
    const stops = this.stops();
    const at = Math.min(Math.max(stops.findIndex(stop => stop.index === this.chosen), 0), stops.length - 2);
    this.add(Math.round((stops[at].position + stops[at + 1].position) / 2));
  }

  /** @param {number} index */
  delete(index) {
    if (index >= 0) this.post({op: 'marker', id: this.id, do: 'delete', index});
  }

  /** @param {number} index */
  menu(index) {
    this.post({op: 'marker', id: this.id, do: 'menu', index});
  }
}
