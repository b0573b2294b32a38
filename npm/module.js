// @ts-check
// A WebAssembly module of this package with its files: the shipped libraries and looks, and fonts that are read when used.

const inNode = typeof process === 'object' && Boolean(process.versions?.node);
const fs = inNode ? import(/* webpackIgnore: true */ 'node:fs') : null;  // a promise: require() takes no module that awaits
const kLibraries = ['FountainLibrary.fll', 'tlmplgm4.fft', 'tlmplgm4.mtx'];

/** @param {string} name a file of this package */
async function load(name) {
  const url = new URL(name, import.meta.url), disk = await fs;
  if (disk) return new Uint8Array(disk.readFileSync(url));
  const response = await fetch(url);
  if (!response.ok) throw new Error(`'${url}' cannot be loaded: ${response.status} ${response.statusText}`);
  return new Uint8Array(await response.arrayBuffer());
}

/**
 * Makes each font a file that is read when it is first opened: at once in Node. In a browser that open fails, and the
 * font's name is added to the set that this gives.
 * @param {any} FS
 */
async function lendFonts(FS) {
  const index = await load('fonts/index.tsv'), disk = await fs;
  const names = new Set(new TextDecoder().decode(index).split('\n').map((line) => line.split('\t')[0]).filter(Boolean));
  /** @type {Set<string>} */ const wanted = new Set();
  FS.mkdirTree('/fonts');
  FS.writeFile('/fonts/index.tsv', index);
  for (const name of names) {
    FS.writeFile(`/fonts/${name}`, '');
    const node = FS.lookupPath(`/fonts/${name}`).node;
    const open = (/** @type {any} */ stream) => {
      if (stream.flags & 3 || node.usedBytes) return;
      if (!disk) {
        wanted.add(name);
        throw new FS.ErrnoError(6);  // try again
      }
      node.contents = new Uint8Array(disk.readFileSync(new URL(`fonts/${name}`, import.meta.url)));
      node.usedBytes = node.contents.length;
    };
    node.stream_ops = { ...node.stream_ops, open };
  }
  return wanted;
}

/**
 * @param {string} name of the module, 'engine' or 'program'
 * @param {{stdin?: () => number | null, stdout?: (byte: number) => void, stderr?: (byte: number) => void,
 *   environment?: Record<string, string>}} around the process around it
 */
export async function openModule(name, { stdin = () => null, stdout = () => {}, stderr = () => {}, environment = {} } = {}) {
  const share = kLibraries.map(async (file) => /** @type {const} */ ([file, await load(`share/${file}`)]));
  const { default: create } = await import(`./${name}.mjs`);
  const module = await create({
    wasmBinary: await load(`${name}.wasm`),
    preRun: [
      (/** @type {any} */ made) => {
        made.FS.init(stdin, stdout, stderr);
        Object.assign(made.ENV, environment);
      },
    ],
  });
  const { FS } = module;
  FS.mkdirTree('/share/glyphmotion/looks');
  for (const [file, bytes] of await Promise.all(share)) FS.writeFile(`/share/glyphmotion/${file}`, bytes);
  const looks = JSON.parse(new TextDecoder().decode(await load('share/looks.json')));
  for (const [file, text] of Object.entries(looks)) FS.writeFile(`/share/glyphmotion/looks/${file}`, text);
  const wanted = await lendFonts(FS);
  /**
   * Calls `work`, and again when it has missed a font, until it has all.
   * @template T
   * @param {() => T} work
   */
  const withFonts = async (work) => {
    for (;;) {
      const result = work();
      if (!wanted.size) return result;
      for (const font of wanted) FS.writeFile(`/fonts/${font}`, await load(`fonts/${font}`));
      wanted.clear();
    }
  };
  return { module, FS, withFonts };
}
