// @ts-check
// The program as a function: render({text, effect, ...}) gives the bytes of a picture file, in Node and in browsers.
import createModule from './engine.mjs';
import { wordsOf } from './words.js';

const inNode = typeof process === 'object' && Boolean(process.versions?.node);
const fileSystem = inNode ? await import(/* webpackIgnore: true */ 'node:fs') : null;
const share = ['FountainLibrary.fll', 'tlmplgm4.fft', 'tlmplgm4.mtx'];

/** @param {string} name a file of this package */
async function load(name) {
  const url = new URL(name, import.meta.url);
  if (fileSystem) return new Uint8Array(fileSystem.readFileSync(url));
  const response = await fetch(url);
  if (!response.ok) throw new Error(`'${url}' cannot be loaded: ${response.status} ${response.statusText}`);
  return new Uint8Array(await response.arrayBuffer());
}

/** Collects the lines of a stream that comes byte by byte. */
class Lines {
  /** @type {string[]} */ lines = [];
  /** @type {number[]} */ #bytes = [];
  /** @param {number} byte */
  take = (byte) => {
    if (byte !== 10) return void this.#bytes.push(byte);
    this.lines.push(new TextDecoder().decode(new Uint8Array(this.#bytes)));
    this.#bytes = [];
  };
}

/**
 * Makes an engine. Every run ends before it returns, so one engine serves one caller at a time.
 * @param {{stdin?: () => number | null, stdout?: (byte: number) => void, stderr?: (byte: number) => void,
 *   environment?: Record<string, string>}} [around]
 */
export async function createEngine(around = {}) {
  const errors = new Lines();
  const wasmBinary = await load('engine.wasm');
  const none = () => null;
  const module = await createModule({
    wasmBinary,
    preRun: [
      (/** @type {any} */ made) => {
        made.FS.init(around.stdin ?? none, around.stdout ?? (() => {}), around.stderr ?? errors.take);
        Object.assign(made.ENV, around.environment);
      },
    ],
  });
  const { FS } = module;
  FS.mkdirTree('/share/glyphmotion');
  for (const name of share) FS.writeFile(`/share/glyphmotion/${name}`, await load(`share/${name}`));
  const wanted = await lendFonts(FS);
  /** @param {string[]} words the program's; the exit code */
  const run = (words) => module.ccall('GlyphmotionRun', 'number', ['string'], [JSON.stringify(words)]);
  /** Runs again with the fonts that were found missing on the way. @param {string[]} words */
  const runLoaded = async (words) => {
    for (;;) {
      errors.lines = [];
      const code = run(words);
      if (!wanted.size) return { code, errors: errors.lines };
      for (const name of wanted) FS.writeFile(`/fonts/${name}`, await load(`fonts/${name}`));
      wanted.clear();
    }
  };
  return { FS, run: runLoaded, options: () => JSON.parse(module.ccall('GlyphmotionOptions', 'string', [], [])) };
}

/**
 * The package's fonts, each of which is read when it is first opened: at once in Node; in a browser the run misses it,
 * and its name is added to the set that this gives.
 * @param {any} FS
 */
async function lendFonts(FS) {
  const index = await load('fonts/index.tsv');
  const names = new Set(new TextDecoder().decode(index).split('\n').map((line) => line.split('\t')[0]).filter(Boolean));
  /** @type {Set<string>} */ const wanted = new Set();
  FS.mkdirTree('/fonts');
  FS.writeFile('/fonts/index.tsv', index);
  for (const name of names) {
    FS.writeFile(`/fonts/${name}`, '');
    const node = FS.lookupPath(`/fonts/${name}`).node;
    const usual = node.stream_ops;
    const open = () => {
      if (node.usedBytes) return;
      if (!fileSystem) {
        wanted.add(name);
        throw new FS.ErrnoError(6);  // try again
      }
      node.contents = new Uint8Array(fileSystem.readFileSync(new URL(`fonts/${name}`, import.meta.url)));
      node.usedBytes = node.contents.length;
    };
    node.stream_ops = { ...usual, open: (/** @type {any} */ stream) => (stream.flags & 3 ? undefined : open()) };
  }
  return wanted;
}

/** @type {ReturnType<typeof createEngine> | undefined} */ let shared;
/** @type {Promise<unknown>} */ let last = Promise.resolve();

/** @type {import('./index.d.ts').render} */
export function render(options = {}) {
  const mine = last.then(() => renderNow(options));
  last = mine.catch(() => {});
  return mine;
}

/** @param {import('./index.d.ts').RenderOptions} options */
async function renderNow(options) {
  const { FS, run } = await (shared ??= createEngine());
  const output = '/job/picture';
  FS.mkdirTree('/job/files');
  FS.chdir('/job/files');
  try {
    for (const [name, bytes] of Object.entries(options.files ?? {})) FS.writeFile(`/job/files/${name.replaceAll('/', '_')}`, bytes);
    const { code, errors } = await run(['--format', 'gif', '-o', output, ...wordsOf(options)].slice(options.format ? 2 : 0));
    const said = (/** @type {string} */ kind) => errors.filter((line) => line.startsWith(`glyphmotion: ${kind}: `)).map((line) => line.slice(15 + kind.length));
    for (const note of said('note')) options.onNote?.(note);
    if (code !== 0) throw new Error(said('error')[0] ?? `the program ended with code ${code}`);
    return FS.readFile(output);
  } finally {
    for (const name of FS.readdir('/job/files')) if (!name.startsWith('.')) FS.unlink(`/job/files/${name}`);
    if (FS.analyzePath(output).exists) FS.unlink(output);
  }
}
