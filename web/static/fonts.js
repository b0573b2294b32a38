// SPDX-License-Identifier: MIT
// The fonts beside the page, each read when the engine first opens it.

/** @param {any} FS @param {Map<string, ArrayBuffer>} given  the index and fonts that are there already */
export function lendFonts(FS, given) {
  const folder = new URL('../fonts/', import.meta.url), index = new TextDecoder().decode(given.get('index.tsv'));
  FS.mkdirTree('/fonts');
  for (const [name, bytes] of given) FS.writeFile(`/fonts/${name}`, new Uint8Array(bytes));
  for (const name of new Set(index.split('\n').map(line => line.split('\t')[0]).filter(Boolean))) {
    if (given.has(name)) continue;
    FS.writeFile(`/fonts/${name}`, '');
    const {node} = FS.lookupPath(`/fonts/${name}`);
    node.stream_ops = {...node.stream_ops, open() {
      if (node.usedBytes) return;
      const request = new XMLHttpRequest();  // the engine cannot wait for a promise here
      request.open('GET', new URL(name, folder), false);
      request.responseType = 'arraybuffer';
      request.send();
      if (request.status !== 200) throw new FS.ErrnoError(29);  // cannot be read
      node.contents = new Uint8Array(request.response);
      node.usedBytes = node.contents.length;
    }};
  }
}
