// What the list's test finds in the module's file system: the sources, the shipped libraries and the fonts.
globalThis.fetch = undefined;  // the module takes it for a browser's, which it is not for files
Module.preRun = () => {
  const source = require('path').resolve(__dirname, '../..');
  for (const [there, here] of [['/source', source], ['/share/glyphmotion', source + '/share/glyphmotion'], ['/fonts', __dirname + '/checksum_fonts']]) {
    FS.mkdirTree(there);
    FS.mount(NODEFS, { root: here }, there);
  }
};
