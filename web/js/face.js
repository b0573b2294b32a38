// SPDX-License-Identifier: MIT
// A canvas that shows what the program paints.
import {make} from './dom.js';

/**
 * @param {CanvasRenderingContext2D} context
 * @param {{width: number, height: number}} message
 * @param {Uint8Array} payload
 */
export function putPicture(context, message, payload) {
  const {canvas} = context;
  if (canvas.width !== message.width) canvas.width = message.width;
  if (canvas.height !== message.height) canvas.height = message.height;
  if (!message.width || !message.height) return;
  const pixels = new Uint8ClampedArray(/** @type {ArrayBuffer} */ (payload.buffer), payload.byteOffset, payload.byteLength);
  context.putImageData(new ImageData(pixels, message.width, message.height), 0, 0);
}

/**
 * A control's face at the size that the page has for it.
 * @param {import('./model.js').Model} model
 * @param {import('./model.js').Dialog} dialog
 * @param {number} id
 * @param {{width?: number, height?: number, item?: number, className?: string}} [options]
 *   without a size: as large as the canvas is shown
 * @returns {HTMLCanvasElement}
 */
export function faceOf(model, dialog, id, options = {}) {
  /** @type {HTMLCanvasElement} */
  const canvas = make('canvas', {class: options.className || 'face'});
  const context = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
  const item = options.item ?? -1;
  dialog.faces.set(`${id}/${item}`, (message, payload) => putPicture(context, message, payload));
  let shown = '';
  const subscribe = (/** @type {number} */ width, /** @type {number} */ height) => {
    if (width < 2 || height < 2 || shown === `${width}x${height}`) return;
    shown = `${width}x${height}`;
    model.post({op: 'face', id, width, height, ...(item >= 0 ? {item} : {})}, dialog);
  };
  if (options.width && options.height) {
    subscribe(options.width, options.height);
  } else {
    new ResizeObserver(entries => {
      const box = entries[0].contentRect;
      subscribe(Math.round(box.width), Math.round(box.height));
    }).observe(canvas);
  }
  return canvas;
}
