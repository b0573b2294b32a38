// SPDX-License-Identifier: MIT
// What the page needs before its engine can start.

/** A name that no other tab holds, and that this one keeps over a reload. */
export async function ownSession() {
  const newKey = () => Array.from(crypto.getRandomValues(new Uint8Array(8)), byte => byte.toString(16).padStart(2, '0')).join('');
  const key = sessionStorage.getItem('session') || newKey();
  const hold = (/** @type {string} */ name) => new Promise(resolve => navigator.locks.request(`glyphmotion-${name}`, {ifAvailable: true}, lock => {
    resolve(Boolean(lock));
    return lock && new Promise(() => {});
  }));
  const own = !navigator.locks || await hold(key) ? key : newKey();
  if (own !== key) await hold(own);
  sessionStorage.setItem('session', own);
  return own;
}

/** @typedef {{compiled: WebAssembly.Module, shipped: ArrayBuffer, fonts: Map<string, ArrayBuffer>}} Supplies  what every engine needs */

const kFirstFonts = ['index.tsv', 'LiberationSans-Bold.ttf'];  // what a first picture is drawn with

/** @param {string} name @returns {Promise<ArrayBuffer>} */
async function load(name) {
  const response = await fetch(new URL(`../${name}`, import.meta.url));
  if (!response.ok) throw new Error(`${name} cannot be loaded (${response.status}); reload the page`);
  return response.arrayBuffer();
}

/** @returns {Promise<WebAssembly.Module>} */
async function compileEngine() {
  const name = 'engine/page.wasm';
  try {
    return await WebAssembly.compileStreaming(fetch(new URL(`../${name}`, import.meta.url)));
  } catch {  // a server that does not know the type
    return WebAssembly.compile(await load(name));
  }
}

/** All at once, so that none waits for another. @returns {Promise<Supplies>} */
export async function loadSupplies() {
  const [compiled, shipped, ...fonts] = await Promise.all([
    compileEngine(), load('engine/page.data'), ...kFirstFonts.map(name => load(`fonts/${name}`))]);
  return {compiled, shipped, fonts: new Map(fonts.map((bytes, at) => [kFirstFonts[at], bytes]))};
}
