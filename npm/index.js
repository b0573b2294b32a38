// @ts-check
// The library as a function: render({text, effect, ...}) gives the bytes of a picture file, in Node and in browsers.
import { openModule } from './module.js';

const kOutOfMemory = 4;
/** @type {ReturnType<typeof openModule> | undefined} */ let engine;
/** @type {Promise<unknown>} */ let last = Promise.resolve();

/** @type {typeof import('./index.d.ts').render} */
export async function render(options = {}) {
  if (typeof options !== 'object' || !options) throw new Error("render takes an object of options, such as { text: 'Hello' }");
  const mine = last.then(() => renderNow(options));
  last = mine.catch(() => {});
  return mine;
}

/** The value of an option as the library's text. @param {any} value */
const textOf = (value) => (typeof value === 'boolean' ? String(Number(value)) : String(value));

const kOfTheCall = ['files', 'format', 'onNote', 'signal'];

/** All pairs of an option and a value. @param {Record<string, any>} options */
function* settingsOf(options) {
  for (const [name, value] of Object.entries(options)) {
    if (value === undefined || value === null || kOfTheCall.includes(name)) continue;
    if (Array.isArray(value)) for (const each of value) yield [name, textOf(each)];
    else if (typeof value === 'object') for (const [key, each] of Object.entries(value)) yield [name, `${key}=${textOf(each)}`];
    else yield [name, textOf(value)];
  }
}

/** @param {any} FS @param {string} name @param {any} bytes */
function lendFile(FS, name, bytes) {
  if (/^\.{0,2}$|[/\0]/.test(name)) throw new Error(`files: '${name}' is not a file's name; give one without a folder`);
  if (bytes instanceof ArrayBuffer) bytes = new Uint8Array(bytes);
  if (typeof bytes !== 'string' && !ArrayBuffer.isView(bytes)) throw new Error(`files: '${name}' takes a Uint8Array or a string`);
  FS.writeFile(`/job/${name}`, bytes);
}

/** @param {import('./index.d.ts').RenderOptions} options */
async function renderNow(options) {
  options.signal?.throwIfAborted();
  engine ??= openModule('engine').catch((error) => {
    engine = undefined;  // the next job asks for the files again
    throw error;
  });
  const { module, FS, withFonts } = await engine;
  FS.mkdirTree('/job');
  FS.chdir('/job');
  const job = module._glyphmotion_job_new(), places = module._malloc(8);
  const check = (/** @type {number} */ status) => {
    if (status === kOutOfMemory) engine = undefined;  // what it was doing stays undone
    if (status !== 0) throw new Error(module.ccall('glyphmotion_job_error', 'string', ['number'], [job]));
  };
  try {
    for (const [name, bytes] of Object.entries(options.files ?? {})) lendFile(FS, name, bytes);
    for (const setting of settingsOf(options)) {
      if (setting[1].includes('\0')) throw new Error(`'${setting[0]}' has a NUL character; leave it out`);
      check(module.ccall('glyphmotion_job_set', 'number', ['number', 'string', 'string'], [job, ...setting]));
    }
    const draw = () => module.ccall('glyphmotion_render_to_memory', 'number', ['number', 'string', 'number', 'number'],
      [job, options.format ?? 'gif', places, places + 4]);
    check(await withFonts(draw));
    const bytes = module.getValue(places, '*'), size = module.getValue(places + 4, 'i32');
    const file = module.HEAPU8.slice(bytes, bytes + size);
    module._free(bytes);
    for (let i = 0, note; (note = module.ccall('glyphmotion_job_note', 'string', ['number', 'number'], [job, i])); ++i) options.onNote?.(note);
    return file;
  } catch (error) {
    if (error instanceof WebAssembly.RuntimeError) engine = undefined;  // it fell in the middle of something
    throw error;
  } finally {
    if (engine) {
      module._glyphmotion_job_free(job);
      module._free(places);
    }
    for (const name of FS.readdir('/job')) if (!/^\.\.?$/.test(name)) FS.unlink(`/job/${name}`);
  }
}
