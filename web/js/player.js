// SPDX-License-Identifier: MIT
// Plays the frames of a run on a canvas.

const kWidest = 32767;  // pixels that every browser has a canvas for; a wider picture shows its beginning

/** @param {HTMLCanvasElement} canvas @param {number} width @param {number} height */
function setSize(canvas, width, height) {
  const columns = Math.min(width, kWidest);
  if (canvas.width !== columns) canvas.width = columns;
  if (canvas.height !== height) canvas.height = height;
}

/**
 * @param {CanvasRenderingContext2D} context
 * @param {{width: number, height: number}} message
 * @param {Uint8Array} payload
 */
export function putPicture(context, message, payload) {
  setSize(context.canvas, message.width, message.height);
  if (!message.width || !message.height) return;
  const pixels = new Uint8ClampedArray(/** @type {ArrayBuffer} */ (payload.buffer), payload.byteOffset, payload.byteLength);
  context.putImageData(new ImageData(pixels, message.width, message.height), 0, 0);
}

/** Viewers show frames of 10 ms and less for longer. */
const seen = (/** @type {number} */ delay) => (delay <= 10 ? 100 : delay);

const kSamples = 16, kSeen = 48;  // frames of which the poster is one; levels of all channels that an eye sees
const kEnough = 0.7;  // a part of the text; where more of it has changed, what is plainest to see counts

export class Animation {
  /** @param {any} message  of type build or thumb @param {Uint8Array} payload */
  constructor(message, payload) {
    this.width = message.width;
    this.height = message.height;
    /** @type {number[]} */
    this.delays = message.delays;
    this.duration = this.delays.reduce((sum, delay) => sum + seen(delay), 0);
    this.indexed = message.format === 'indexed';
    this.table = this.indexed ? new Uint32Array(payload.slice(0, 1024).buffer) : null;
    this.frames = this.indexed ? payload.subarray(1024) : payload;
  }

  get count() { return this.delays.length; }

  /** Whether some pixel is seen through. */
  get transparent() {
    return this.table ? this.table.some(colour => colour >>> 24 === 0) : true;
  }

  /** @param {number} frame @returns {ImageData} */
  picture(frame) {
    const size = this.width * this.height;
    const image = new ImageData(this.width, this.height);
    if (!this.table) {
      image.data.set(this.frames.subarray(frame * size * 4, (frame + 1) * size * 4));
      return image;
    }
    const pixels = new Uint32Array(image.data.buffer);
    const start = frame * size, {table, frames} = this;
    for (let i = 0; i < size; i++) pixels[i] = table[frames[start + i]];
    return image;
  }

  /** @param {CanvasRenderingContext2D} context @param {number} frame */
  paint(context, frame) {
    setSize(context.canvas, this.width, this.height);
    context.putImageData(this.picture(frame), 0, 0);
  }

  /** The frame at a time in milliseconds from the start. @param {number} time */
  frameAt(time) {
    let left = this.duration ? time % this.duration : 0;
    for (let i = 0; i < this.count; i++) {
      left -= seen(this.delays[i]);
      if (left < 0) return i;
    }
    return 0;
  }

  /** @param {number} frame */
  timeOf(frame) {
    return this.delays.slice(0, frame).reduce((sum, delay) => sum + seen(delay), 0);
  }

  /** The frame that shows best what the effect does: the one that differs most from the text at rest, which stays longest, with much still to be seen. */
  poster() {
    const rest = this.picture(this.delays.indexOf(Math.max(...this.delays))).data;
    const differs = (/** @type {Uint8ClampedArray} */ pixels, /** @type {number} */ at, /** @type {Uint8ClampedArray} */ others, /** @type {number} */ from) =>
      Math.abs(pixels[at] - others[from]) + Math.abs(pixels[at + 1] - others[from + 1]) + Math.abs(pixels[at + 2] - others[from + 2]) + Math.abs(pixels[at + 3] - others[from + 3]);
    let best = 0, most = -1;
    for (let sample = 0; sample < kSamples; sample++) {
      const frame = Math.min(Math.floor(this.count * (sample + 0.5) / kSamples), this.count - 1), {data} = this.picture(frame);
      let difference = 0, covered = 1, ink = 0;
      for (let i = 0; i < data.length; i += 12) {
        if (differs(data, i, rest, i) > kSeen) difference++;
        if (differs(rest, i, rest, 0) > kSeen) covered++;
        ink += differs(data, i, data, 0);
      }
      const score = Math.min(difference / covered, kEnough) * ink;
      if (score <= most) continue;
      most = score;
      best = frame;
    }
    return best;
  }
}

/** One canvas that plays whatever animation it holds. */
export class Player {
  /** @param {HTMLCanvasElement} canvas @param {(frame: number) => void} [onFrame] */
  constructor(canvas, onFrame = () => {}) {
    this.canvas = canvas;
    this.context = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
    this.onFrame = onFrame;
    /** @type {Animation|null} */
    this.animation = null;
    this.frame = 0;
    this.playing = false;
    this.started = 0;
    this.tick = this.tick.bind(this);
  }

  /** Takes the place of what plays, without a gap. @param {Animation} animation @param {number} [frame] */
  show(animation, frame) {
    this.animation = animation;
    this.step(frame ?? (this.playing ? 0 : Math.min(this.frame, animation.count - 1)));
  }

  play() {
    if (!this.animation) return;
    this.started = performance.now() - this.animation.timeOf(this.frame);
    if (this.playing) return;
    this.playing = true;
    requestAnimationFrame(this.tick);
  }

  pause() { this.playing = false; }

  /** @param {number} frame */
  step(frame) {
    if (!this.animation) return;
    const {count} = this.animation;
    this.frame = ((frame % count) + count) % count;
    this.started = performance.now() - this.animation.timeOf(this.frame);
    this.animation.paint(this.context, this.frame);
    this.onFrame(this.frame);
  }

  /** @param {number} now */
  tick(now) {
    if (!this.playing || !this.animation) return;
    requestAnimationFrame(this.tick);
    const frame = this.animation.frameAt(Math.max(now - this.started, 0));
    if (frame === this.frame) return;
    this.frame = frame;
    this.animation.paint(this.context, frame);
    this.onFrame(frame);
  }
}
