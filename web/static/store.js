// SPDX-License-Identifier: MIT
// The engine's own files (documents that were not saved, the last ones opened, the user's libraries) and the user's
// fonts in the browser's database.

const kHome = '/glyphmotion', kFonts = '/fonts', kTable = 'files', kPause = 250;

/** @template T @param {IDBRequest<T>} request @returns {Promise<T>} */
const done = request => new Promise((resolve, reject) => {
  request.onsuccess = () => resolve(request.result);
  request.onerror = () => reject(request.error);
});

/** Paths and times of all files below a folder. @param {any} FS @param {string} folder @returns {Generator<[string, number]>} */
function* filesBelow(FS, folder) {
  if (!FS.analyzePath(folder).exists) return;
  for (const name of FS.readdir(folder)) {
    const path = `${folder}/${name}`;
    if (name === '.' || name === '..' || name.startsWith('.glyphmotion-')) continue;  // or not complete yet
    const {mode, mtime} = FS.stat(path);
    if (FS.isDir(mode)) yield* filesBelow(FS, path);
    else if (!name.endsWith('.lock')) yield [path, mtime.getTime()];
  }
}

function openDatabase() {
  const opening = indexedDB.open('glyphmotion', 1);
  opening.onupgradeneeded = () => opening.result.createObjectStore(kTable);
  return done(opening);
}

/** A font of the user's, for every engine that is opened from now on. @param {string} name @param {Uint8Array} bytes */
export async function keepFont(name, bytes) {
  const table = (await openDatabase()).transaction(kTable, 'readwrite').objectStore(kTable);
  await done(table.put({bytes, time: Date.now()}, `${kFonts}/${name}`));
}

export class Store {
  /**
   * A browser that keeps nothing (a private window) may have no database: then nothing is kept.
   * @param {string|undefined} session  none: for the user's fonts alone
   */
  static async open(session) {
    try {
      const database = await openDatabase();
      const table = database.transaction(kTable).objectStore(kTable);
      const [paths, files] = await Promise.all([done(table.getAllKeys()), done(table.getAll())]);
      const held = (await navigator.locks?.query())?.held || [];
      const busy = new Set(held.map(lock => `${kHome}/page/unsaved/page-${(lock.name || '').replace('glyphmotion-', '')}.json`));
      busy.delete(`${kHome}/page/unsaved/page-${session}.json`);
      const wanted = (/** @type {string} */ path) => session ? !busy.has(path) : path.startsWith(kFonts);
      return new Store(database, paths.map((path, i) => ({path: String(path), ...files[i]})).filter(file => wanted(file.path)));
    } catch {
      return undefined;
    }
  }

  /** @param {IDBDatabase} database @param {{path: string, bytes: Uint8Array, time: number}[]} files */
  constructor(database, files) {
    this.database = database;
    this.files = files;
    /** @type {Map<string, number>} */
    this.kept = new Map();
    this.timer = 0;
  }

  /** Puts the kept files where the engine looks for them. @param {any} FS */
  restore(FS) {
    for (const {path, bytes, time} of this.files) {
      FS.mkdirTree(path.slice(0, path.lastIndexOf('/')));
      FS.writeFile(path, bytes);
      FS.utime(path, time, time);
      if (path.startsWith(kHome)) this.kept.set(path, FS.stat(path).mtime.getTime());
    }
    this.files = [];
  }

  /** Keeps what has changed, a moment later. @param {any} FS */
  keep(FS) {
    this.timer ||= Number(setTimeout(() => this.write(FS), kPause));
  }

  /** Keeps it now. @param {any} FS */
  async write(FS) {
    clearTimeout(this.timer);
    this.timer = 0;
    const now = new Map(filesBelow(FS, kHome));
    const changed = [...now].filter(([path, time]) => this.kept.get(path) !== time).map(([path]) => path);
    const gone = [...this.kept.keys()].filter(path => !now.has(path));
    this.kept = now;
    if (!changed.length && !gone.length) return;
    const transaction = this.database.transaction(kTable, 'readwrite'), table = transaction.objectStore(kTable);
    for (const path of changed) table.put({bytes: FS.readFile(path), time: now.get(path)}, path);
    for (const path of gone) table.delete(path);
    await new Promise(resolve => { transaction.oncomplete = transaction.onabort = resolve; });
  }
}
