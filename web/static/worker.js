// SPDX-License-Identifier: MIT
// A worker with the engine: with the dialog of a session, or for orders of work.
// @ts-ignore: it is built
import createEngine from '../engine/page.mjs';
import {lendFonts} from './fonts.js';
import {Store} from './store.js';

/** @type {any} */ let engine;
/** @type {Promise<void>} */ let opening;
/** @type {Store|undefined} */ let store;
let received = 0;
const encoder = new TextEncoder(), decoder = new TextDecoder();

/**
 * Calls the engine while its dialog waits. (Its own ccall would wait for the dialog's end.)
 * @param {string} name @param {Uint8Array} bytes @returns {number} what it returns
 */
function call(name, bytes) {
  const at = engine._malloc(bytes.length);
  engine.HEAPU8.set(bytes, at);
  const result = engine[`_${name}`](at, bytes.length);
  engine._free(at);
  return result;
}

/** @param {string} text */
const terminated = text => encoder.encode(`${text}\0`);

/** @param {{supplies: import('./opening.js').Supplies, session?: string}} options */
async function open({supplies: {compiled, shipped, fonts}, session}) {
  const files = Store.open(session);
  engine = await createEngine({
    locateFile: (/** @type {string} */ name) => new URL(`../engine/${name}`, import.meta.url).href,
    instantiateWasm(/** @type {any} */ imports, /** @type {(instance: WebAssembly.Instance) => void} */ done) {
      WebAssembly.instantiate(compiled, imports).then(done);
      return {};
    },
    getPreloadedPackage: () => shipped,
    give(/** @type {string} */ json, /** @type {Uint8Array} */ payload) { postMessage({json, payload, files: filesOf(json)}, {transfer: [payload.buffer]}); },
    onAbort: fail,
    idle() {
      postMessage({idle: received});
      store?.keep(engine.FS);
    },
  });
  lendFonts(engine.FS, fonts);
  store = await files;
  store?.restore(engine.FS);
  if (session) engine.ccall('GlyphmotionPage', null, ['string'], [session], {async: true}).catch(fail);
}

/** The font files that orders of work name, which only this worker has. @param {string} json @returns {[string, Uint8Array][]} */
function filesOf(json) {
  if (!json.includes('"--font-file"')) return [];
  const {orders = []} = JSON.parse(json);
  const paths = orders.flatMap((/** @type {any} */ {words = [], options = []}) => [...words, ...options].filter((_, at, all) => all[at - 1] === '--font-file'));
  return [...new Set(paths)].filter(path => engine.FS.analyzePath(path).exists).map(path => [path, engine.FS.readFile(path)]);
}

/** @param {unknown} error */
function fail(error) { postMessage({failed: error instanceof Error ? error.message : `${error}`}); }

addEventListener('unhandledrejection', event => {
  event.preventDefault();
  fail(event.reason);
});

onmessage = async ({data}) => {
  try {
    if (data.open) return await (opening = open(data.open));
    await opening;
    if (data.events) {
      ++received;
      call('GlyphmotionPost', terminated(data.events));
      engine.wake();
    } else if (data.upload) {
      const name = call('GlyphmotionUpload', data.upload);
      postMessage({ticket: data.ticket, uploaded: decoder.decode(engine.HEAPU8.subarray(name, engine.HEAPU8.indexOf(0, name)))});
    } else if (data.save) {
      await store?.write(engine.FS);
      postMessage({saved: true});
    } else if (data.work) {
      for (const [path, bytes] of data.files) {
        engine.FS.mkdirTree(path.slice(0, path.lastIndexOf('/')));
        engine.FS.writeFile(path, bytes);
      }
      call('GlyphmotionWork', terminated(data.work));
      postMessage({done: true});
    }
  } catch (error) {
    fail(error);
  }
};
