// SPDX-License-Identifier: MIT
// Workers for what takes longer than a person waits for: one for each kind of work, opened when it is first wanted.

const kPause = 300;  // milliseconds after the last change

export const newWorker = () => new Worker(new URL('./worker.js', import.meta.url), {type: 'module'});

/** @typedef {import('./opening.js').Supplies} Supplies */
/** @typedef {{order: any, files: [string, Uint8Array][]}} Order  with the files that it needs */

class Bench {
  /** @param {Supplies} supplies @param {(message: any, payload: Uint8Array) => void} receive */
  constructor(supplies, receive) {
    this.supplies = supplies;
    this.receive = receive;
    /** @type {Order[]} */
    this.orders = [];
    this.busy = false;
    this.stale = false;  // fonts have been added since it was opened
  }

  /** Orders that have not begun are replaced. @param {Order[]} orders */
  put(orders) {
    this.orders = orders;
    this.next();
  }

  next() {
    if (this.busy || !this.orders.length) return;
    this.busy = true;
    const {order, files} = /** @type {Order} */ (this.orders.shift());
    this.open().postMessage({work: JSON.stringify(order), files});
  }

  open() {
    if (this.worker) return this.worker;
    const worker = newWorker();
    worker.onmessage = ({data}) => {
      if (data.json) this.receive(JSON.parse(data.json), data.payload);
      else if ('failed' in data) this.fail();
      else if ('done' in data) this.finish();
    };
    worker.onerror = event => {
      event.preventDefault();
      this.fail();
    };
    worker.postMessage({open: {supplies: this.supplies}});
    return this.worker = worker;
  }

  finish() {
    this.busy = false;
    if (this.stale) this.end();
    this.next();
  }

  fail() {
    this.giveUp();
    this.receive({type: 'notice', kind: 'error', text: 'there is not enough memory; try a smaller size or fewer frames'}, new Uint8Array());
    this.next();
  }

  /** The next order gets an engine that reads the fonts anew. */
  renew() {
    this.stale = this.busy;
    if (!this.busy) this.end();
  }

  end() {
    this.worker?.terminate();
    this.worker = undefined;
    this.stale = false;
  }

  /** Ends the current order: its worker with it, since nothing reaches a worker that computes. The next one gets ready. */
  giveUp() {
    if (!this.busy) return;
    this.end();
    this.busy = false;
    this.open();
  }
}

export class Workshop {
  /** @param {Supplies} supplies @param {(message: any, payload: Uint8Array) => void} receive */
  constructor(supplies, receive) {
    this.build = new Bench(supplies, receive);
    this.picture = new Bench(supplies, receive);
    this.export = new Bench(supplies, receive);
    this.build.open();  // beside the dialog's engine
    this.timer = 0;
    this.pause = 0;
  }

  renew() {
    for (const bench of [this.build, this.picture, this.export]) bench.renew();
  }

  /** @param {{work: string, orders: any[]}} message of the dialog @param {[string, Uint8Array][]} files */
  order(message, files) {
    const {work} = message, orders = message.orders.map(order => ({order, files}));
    if (work === 'picture') return this.picture.put(orders);
    if (work === 'export') return this.export.put([...this.export.orders, ...orders]);
    clearTimeout(this.timer);
    this.build.giveUp();
    this.build.orders = [];
    this.timer = window.setTimeout(() => this.build.put(orders), this.pause);
    if (orders.length) this.pause = kPause;
  }
}
