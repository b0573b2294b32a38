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

/** @returns {Promise<WebAssembly.Module>} */
export async function compileEngine() {
  const address = new URL('../engine/page.wasm', import.meta.url);
  try {
    return await WebAssembly.compileStreaming(fetch(address));
  } catch {  // a server that does not know the type
    const response = await fetch(address);
    if (!response.ok) throw new Error(`the engine cannot be loaded (${response.status}); reload the page`);
    return WebAssembly.compile(await response.arrayBuffer());
  }
}
