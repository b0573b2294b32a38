// SPDX-License-Identifier: MIT
// The large picture: the animation as its file will show it, a still while it is built, and what one does to look closer.
import {clamp, icon, make, sentence, sizeText} from './dom.js';
import {Animation, Player, putPicture} from './player.js';

const kLeastFit = 0.2;  // a longer line scrolls in its view, so that it can be read
const kLate = 200;  // milliseconds until a picture is overdue

const kBackgrounds = [['check', 'Checks'], ['light', 'White'], ['dark', 'Black'], ['page', 'Page']];

export class Stage {
  /** @param {HTMLElement} place */
  constructor(place) {
    this.place = place;
    this.canvas = make('canvas', {class: 'picture', role: 'img', 'aria-label': 'The animation'});
    this.player = new Player(this.canvas, frame => this.showFrame(frame));
    this.revision = -1;
    this.stillOf = -1;
    this.zoom = 0;  // percent; 0: what fits
    this.calm = matchMedia('(prefers-reduced-motion: reduce)').matches;
    this.wantsToPlay = !this.calm;
    this.empty = make('p', {class: 'empty', hidden: true}, 'Type a few words above, and they move.');
    this.view = make('div', {class: 'view'}, this.canvas, this.empty);
    this.trouble = make('p', {class: 'trouble', role: 'alert', hidden: true});
    this.busy = make('div', {class: 'busy', hidden: true});
    this.running = false;  // a build
    this.late = 0;  // the timer of a still that is due
    this.build();
    new ResizeObserver(() => this.fit()).observe(this.view);
    const above = make('div', {class: 'above'});
    place.before(above);
    new IntersectionObserver(([entry]) => {
      place.classList.toggle('stuck', !entry.isIntersecting && entry.boundingClientRect.top < 0 && getComputedStyle(place).position === 'sticky');
    }).observe(above);
    this.setBackground(localStorage.getItem('background') || 'check');
  }

  build() {
    this.toggle = make('button', {class: 'icon', 'aria-label': 'Pause', onclick: () => this.setPlaying(!this.player.playing)});
    this.counter = make('output', {class: 'counter', 'aria-label': 'Frame'});
    this.scrub = make('input', {type: 'range', min: 0, max: 0, value: 0, class: 'scrub', 'aria-label': 'Frame',
      oninput: () => { this.setPlaying(false); this.player.step(Number(this.scrub.value)); }});
    const step = (/** @type {number} */ by) => () => { this.setPlaying(false); this.player.step(this.player.frame + by); };
    this.facts = make('p', {class: 'facts', 'aria-live': 'off'});
    this.zoomText = make('button', {class: 'zoom-text', title: 'Fit or actual size', onclick: () => this.setZoom(this.zoom === 0 ? 100 : 0)});
    const scale = (/** @type {number} */ by) => () => this.setZoom(clamp(Math.round((this.zoom || this.shownZoom()) * by / 25) * 25, 25, 800));
    this.backgrounds = make('div', {class: 'backgrounds', role: 'radiogroup', 'aria-label': 'Background of the preview'},
      ...kBackgrounds.map(([name, words]) => make('label', {class: `backdrop ${name}`, title: words},
        make('input', {type: 'radio', name: 'backdrop', value: name, 'aria-label': words, onchange: () => this.setBackground(name)}))));
    this.place.append(this.view, make('div', {class: 'bar'}, this.trouble, this.busy,
      make('div', {class: 'transport'}, make('button', {class: 'icon', 'aria-label': 'One frame back', onclick: step(-1)}, icon('back')),
        this.toggle, make('button', {class: 'icon', 'aria-label': 'One frame on', onclick: step(1)}, icon('forward'))),
      this.counter, this.scrub, this.facts,
      make('div', {class: 'looking'}, this.backgrounds, make('div', {class: 'zooming', role: 'group', 'aria-label': 'Zoom'},
        make('button', {class: 'icon', 'aria-label': 'Smaller', onclick: scale(0.6)}, icon('minus')), this.zoomText,
        make('button', {class: 'icon', 'aria-label': 'Larger', onclick: scale(1.6)}, icon('plus'))))));
    this.setPlaying(this.wantsToPlay);
  }

  /** @param {boolean} playing */
  setPlaying(playing) {
    this.wantsToPlay = playing;
    if (playing) this.player.play();
    else this.player.pause();
    this.toggle.replaceChildren(icon(playing ? 'pause' : 'play'));
    this.toggle.setAttribute('aria-label', playing ? 'Pause' : 'Play');
  }

  /** @param {string} name */
  setBackground(name) {
    for (const [each] of kBackgrounds) this.place.classList.toggle(`on-${each}`, each === name);
    const input = this.backgrounds.querySelector(`[value="${name}"]`);
    if (input) input.checked = true;
    localStorage.setItem('background', name);
  }

  /** @param {number} percent */
  setZoom(percent) {
    this.zoom = percent;
    this.fit();
  }

  shownZoom() {
    return Math.round(this.canvas.clientWidth * 100 / Math.max(this.canvas.width, 1));
  }

  fit() {
    const room = this.view.clientWidth - 48;
    const natural = this.canvas.width;
    if (!natural || room < 40) return;
    const stuck = this.place.classList.contains('stuck');
    const most = Math.min(room / natural, (stuck ? innerHeight * 0.24 - 16 : 340) / Math.max(this.canvas.height, 1));
    const factor = this.zoom ? this.zoom / 100 : most >= 2 ? Math.min(Math.floor(most), 2) : clamp(most, kLeastFit, 1);
    this.canvas.style.width = `${Math.round(natural * factor)}px`;
    this.canvas.classList.toggle('fine', factor < 1);
    this.zoomText.textContent = `${Math.round(factor * 100)} %`;
  }

  /** @param {number} frame */
  showFrame(frame) {
    const count = this.player.animation ? this.player.animation.count : 0;
    this.scrub.value = frame;
    this.counter.textContent = count ? `${frame + 1} / ${count}` : '';
  }

  showWork() {
    const works = this.running || this.late < 0;
    this.busy.hidden = !works;
    this.view.setAttribute('aria-busy', `${works}`);
  }

  /** A picture of this revision follows; what takes long says so. @param {number} revision */
  expect(revision) {
    if (revision === this.revision || revision === this.stillOf || this.late) return;
    this.late = window.setTimeout(() => {
      this.late = -1;
      this.showWork();
    }, kLate);
  }

  /** The sample, at once. @param {any} message @param {Uint8Array} payload */
  still(message, payload) {
    clearTimeout(this.late);
    this.late = 0;
    this.stillOf = message.revision;
    this.showWork();
    this.empty.hidden = message.width > 0;
    this.canvas.hidden = message.width === 0;
    this.trouble.hidden = true;
    this.place.classList.toggle('blank', !message.width);
    if (message.revision === this.revision) return;
    this.player.pause();
    if (!message.width) return this.clear();
    putPicture(this.player.context, message, payload);
    this.fit();
    this.place.classList.add('stale');
  }

  /** Nothing is shown, so there is nothing to say about it. */
  clear() {
    this.player.animation = null;
    this.revision = -1;
    this.running = false;
    this.showWork();
    this.facts.replaceChildren();
  }

  /** @param {any} message  of type build @param {Uint8Array} payload */
  built(message, payload) {
    this.running = message.state === 'running';
    this.showWork();
    if (message.state === 'failed') {
      this.trouble.textContent = sentence(message.message);
      this.trouble.hidden = false;
    }
    if (message.state !== 'done') return;
    this.trouble.hidden = true;
    this.revision = message.revision;
    const animation = new Animation(message, payload);
    this.scrub.max = animation.count - 1;
    this.player.show(animation, this.wantsToPlay ? 0 : undefined);
    if (this.wantsToPlay) this.player.play();
    this.fit();
    this.place.classList.remove('stale');
    this.place.dataset.revision = message.revision;
    const rate = animation.count > 1 && message.delays[0] > 0 ? ` at ${Number((1000 / message.delays[0]).toFixed(1))} fps` : '';
    const parts = [`${message.width} × ${message.height}`, `${animation.count} ${animation.count === 1 ? 'frame' : 'frames'}${rate}`,
      `${(animation.duration / 1000).toFixed(1)} s`, sizeText(message.bytes)];
    this.facts.replaceChildren(...parts.map(part => make('span', {}, part)), make('span', {class: 'ms'}, `built in ${message.ms} ms`),
      ...(message.notes || []).map((/** @type {string} */ note) => make('span', {class: 'note'}, note)));
  }
}
