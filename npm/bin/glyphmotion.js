#!/usr/bin/env node
// The program itself, on this machine's files.
import { existsSync, readSync, readdirSync, statSync, writeSync } from 'node:fs';
import { createEngine } from '../index.js';

/** @param {number} descriptor */
function writer(descriptor) {
  let pending = Buffer.alloc(1 << 16), length = 0;
  const flush = () => {
    for (let at = 0; at < length; ) at += writeSync(descriptor, pending, at, length - at);
    length = 0;
  };
  return { flush, put: (byte) => { pending[length++] = byte; if (length === pending.length) flush(); } };
}

const byte = Buffer.alloc(1);
const stdin = () => { try { return readSync(0, byte, 0, 1, null) ? byte[0] : null; } catch { return null; } };
const stdout = writer(1), stderr = writer(2);
const environment = {};
for (const name of ['GLYPHMOTION_HOME', 'GLYPHMOTION_FONTS', 'SOURCE_DATE_EPOCH']) if (process.env[name]) environment[name] = process.env[name];
const { FS, run } = await createEngine({ stdin, stdout: stdout.put, stderr: stderr.put, environment });
for (const name of readdirSync('/')) {
  const path = `/${name}`;
  if (['dev', 'proc', 'sys', 'fonts', 'share'].includes(name) || !existsSync(path) || !statSync(path).isDirectory()) continue;
  if (!FS.analyzePath(path).exists) FS.mkdir(path);
  FS.mount(FS.filesystems.NODEFS, { root: path }, path);
}
FS.chdir(process.cwd());
const { code } = await run(process.argv.slice(2));
stdout.flush();
stderr.flush();
process.exitCode = code;
