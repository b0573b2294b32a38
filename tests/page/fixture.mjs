// SPDX-License-Identifier: MIT
// A program with its page in a browser, for a test.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {mkdtempSync, rmSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {chromium} from 'playwright-core';

const root = new URL('../../', import.meta.url).pathname;
export const program = process.env.GLYPHMOTION_PROGRAM || join(root, 'build/release/glyphmotion');
const kFlags = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'];

export const newFolder = () => mkdtempSync(join(tmpdir(), 'glyphmotion-page-'));

/** Starts `glyphmotion edit`; the address is its first line. */
export async function startProgram({home = newFolder(), words = []} = {}) {
  const child = spawn(program, ['edit', '--no-open', ...words], {env: {...process.env, GLYPHMOTION_HOME: home}, stdio: ['ignore', 'pipe', 'pipe']});
  let said = '';
  child.stderr.on('data', bytes => { said += bytes; });
  const ended = new Promise(resolve => child.once('exit', resolve));
  const address = await new Promise((resolve, reject) => {
    child.stdout.once('data', bytes => resolve(String(bytes).trim()));
    child.once('exit', code => reject(new Error(`the program ended with ${code}`)));
  });
  const [base, token] = address.split('/#');
  const stop = async () => {
    child.kill();
    await ended;
    assert.equal(said, '', 'the program ends in silence');
    rmSync(home, {recursive: true, force: true});
  };
  return {address, base, token, child, ended, home, stop};
}

let browser;
export const openBrowser = async () => (browser ??= await chromium.launch({executablePath: process.env.CHROMIUM || '/usr/bin/chromium', args: kFlags}));
export const closeBrowser = async () => browser?.close();

/** A page of its own, perhaps one that had a session before; what its console says must be nothing. */
export async function openPage(address, {session, ...options} = {}) {
  const context = await (await openBrowser()).newContext({viewport: {width: 1280, height: 900}, acceptDownloads: true, ...options});
  if (session) await context.addInitScript(key => sessionStorage.setItem('session', key), session);
  await context.grantPermissions(['clipboard-read', 'clipboard-write']);
  const page = await context.newPage();
  const said = [];
  page.on('console', message => said.push(message.text()));
  page.on('pageerror', error => said.push(String(error)));
  await page.goto(address);
  await page.waitForSelector('body.ready');
  return Object.assign(page, {said});
}

/** The stage shows the animation of the document as it is now. */
export async function built(page) {
  await page.waitForFunction(() => document.querySelector('#stage').dataset.revision === String(window.glyphmotion.document.revision), null, {timeout: 60000});
}

/** Everything that was posted has been answered. */
export async function settled(page) {
  await page.waitForFunction(() => !window.glyphmotion.connection.posting && !window.glyphmotion.connection.queue.length);
  await page.evaluate(() => new Promise(resolve => setTimeout(resolve, 150)));
}

/** What is read turns into what is wanted, however busy the machine is. */
export async function becomes(read, wanted) {
  let found = await read();
  for (const until = Date.now() + 15000; found !== wanted && Date.now() < until; found = await read())
    await new Promise(resolve => setTimeout(resolve, 50));
  assert.equal(found, wanted);
}

export const facts = (page, id) => page.evaluate(i => structuredClone(window.glyphmotion.top.get(i)), id);
export const state = page => page.evaluate(() => structuredClone(window.glyphmotion.document));
