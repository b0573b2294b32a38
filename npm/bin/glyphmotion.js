#!/usr/bin/env node
// The program itself, on this machine's files.
import { existsSync, readSync, readdirSync, statSync, writeSync } from 'node:fs';
import { openModule } from '../module.js';

/** @param {number} descriptor */
function writer(descriptor) {
  const pending = Buffer.alloc(1 << 16);
  let length = 0;
  const flush = () => {
    for (let at = 0; at < length; ) at += writeSync(descriptor, pending, at, length - at);
    length = 0;
  };
  const put = (/** @type {number} */ byte) => {
    pending[length++] = byte;
    if (length === pending.length) flush();
  };
  return { flush, put };
}

const byte = Buffer.alloc(1), stdout = writer(1), stderr = writer(2);
const stdin = () => (readSync(0, byte, 0, 1, null) ? byte[0] : null);
/** @type {Record<string, string>} */ const environment = {};
for (const name of ['GLYPHMOTION_HOME', 'GLYPHMOTION_FONTS', 'SOURCE_DATE_EPOCH']) {
  if (process.env[name]) environment[name] = process.env[name];
}
const { module, FS, withFonts } = await openModule('program', { stdin, stdout: stdout.put, stderr: stderr.put, environment });
for (const name of readdirSync('/')) {
  const path = `/${name}`;
  if (['dev', 'proc', 'sys', 'fonts', 'share'].includes(name) || !existsSync(path) || !statSync(path).isDirectory()) continue;
  FS.mkdirTree(path);
  FS.mount(FS.filesystems.NODEFS, { root: path }, path);
}
FS.chdir(process.cwd());
const words = process.argv.slice(2).map((word) => `${word}\0`).join('');
process.exitCode = await withFonts(() => module.ccall('GlyphmotionRun', 'number', ['string', 'number'], [words, Buffer.byteLength(words)]));
stdout.flush();
stderr.flush();
