// The page as a static folder in Chromium, once with and once without the headers that isolate it: what it makes is what
// the native program makes, nothing leaves the browser, and work outlives a reload and a lost net.
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync} from 'node:fs';
import {createServer} from 'node:http';
import {tmpdir} from 'node:os';
import path from 'node:path';
import {setTimeout as sleep} from 'node:timers/promises';
import {after, test} from 'node:test';
import {fileURLToPath} from 'node:url';
import {constants, brotliCompressSync, gzipSync} from 'node:zlib';
import {becomes, built, closeBrowser, openBrowser, openPage, program, settled, state} from '../page/fixture.mjs';

const web = fileURLToPath(new URL('../../build/web', import.meta.url));
const folder = mkdtempSync(path.join(tmpdir(), 'glyphmotion-web-'));
const kPlace = '/tools/animated-text/';  // the page lives in any folder
const kTypes = {'.html': 'text/html', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css', '.svg': 'image/svg+xml', '.wasm': 'application/wasm', '.webmanifest': 'application/manifest+json'};
const kIsolation = {'Cross-Origin-Opener-Policy': 'same-origin', 'Cross-Origin-Embedder-Policy': 'require-corp'};
after(async () => {
  await closeBrowser();
  rmSync(folder, {recursive: true});
});

const kLink = {rate: 1250000, delay: 20, chunk: 12500};  // 10 Mbit/s: bytes a second, milliseconds
const kCodings = {
  gzip: bytes => gzipSync(bytes, {level: 9}),
  br: bytes => brotliCompressSync(bytes, {params: {[constants.BROTLI_PARAM_QUALITY]: 11, [constants.BROTLI_PARAM_LGWIN]: 24}}),
};
const packed = new Map();

/** What a host keeps of a file that it compresses. */
function compressed(coding, name) {
  const key = `${coding} ${name}`;
  if (!packed.has(key)) packed.set(key, kCodings[coding](readFileSync(name)));
  return packed.get(key);
}

/** A server that knows files and nothing else; with a coding, it compresses and all answers share one link. */
async function serve(headers, {root = `${web}/page`, coding} = {}) {
  let free = 0, sent = 0;
  async function sendSlowly(response, bytes) {
    await sleep(kLink.delay);
    for (let at = 0; at < bytes.length; at += kLink.chunk) {
      const part = bytes.subarray(at, at + kLink.chunk);
      free = Math.max(free, performance.now()) + 1000 * part.length / kLink.rate;
      await sleep(Math.max(0, free - performance.now()));
      sent += part.length;
      response.write(part);
    }
    response.end();
  }
  const server = createServer((request, response) => {
    const {pathname} = new URL(request.url, 'http://localhost');
    const name = path.join(root, path.normalize(pathname.slice(kPlace.length - 1).replace(/\/$/, '/index.html')));
    try {
      if (!pathname.startsWith(kPlace)) throw new Error('outside');
      const bytes = coding ? compressed(coding, name) : readFileSync(name);
      response.writeHead(200, {...headers, ...(coding && {'Content-Encoding': coding, 'Cache-Control': 'max-age=600'}), 'Content-Type': kTypes[path.extname(name)] || 'application/octet-stream'});
      if (coding) sendSlowly(response, bytes);
      else response.end(bytes);
    } catch {
      response.writeHead(404).end();
    }
  });
  await new Promise(resolve => server.listen(0, '127.0.0.1', resolve));
  return {server, sent: () => sent, base: `http://127.0.0.1:${server.address().port}${kPlace}`, close: () => server.close() && server.closeAllConnections()};
}

const kVisits = Number(process.env.VISITS ?? 1);  // of each coding: more than one for a figure that chance moves less
for (const [coding, most] of Object.entries({br: 1180000, gzip: 1480000})) {
  test(`a first visit shows a picture after ${most} bytes of ${coding}`, {timeout: 60000 + 30000 * kVisits}, async t => {
    // A host keeps its files compressed.
    for (const name of readdirSync(`${web}/page`, {recursive: true})) if (/\.(?!otf)\w+$/.test(name)) compressed(coding, path.join(web, 'page', name));
    const all = [];
    for (let visit = 0; visit < kVisits; ++visit) {
      const {close, sent, base} = await serve({}, {coding});
      const page = await (await (await openBrowser()).newContext()).newPage();
      await page.goto('about:blank');  // a person's browser runs already
      await page.goto(base, {waitUntil: 'commit'});
      const milliseconds = await (await page.waitForFunction(() => (document.querySelector('#stage .stale, #stage.stale, #stage[data-revision]') ? performance.now() : 0))).jsonValue();
      const bytes = sent();
      all.push(Math.round(milliseconds));
      assert.ok(bytes <= most, `${bytes} bytes`);
      await page.context().close();
      close();
    }
    t.diagnostic(`the first picture after ${all.sort((a, b) => a - b)[all.length >> 1]} ms (${all.join(', ')}) at 10 Mbit/s with ${coding}`);
  });
}

test('the package in a page gives the native program\'s bytes, with a look and its own example', {timeout: 120000}, async t => {
  const {close, base} = await serve({}, {root: `${web}/npm`});
  t.after(close);
  const page = await (await (await openBrowser()).newContext()).newPage();
  await page.goto(`${base}example.html`);
  await page.waitForFunction(() => document.querySelector('img').naturalWidth > 0);
  const bytes = await page.evaluate(async () => Array.from(await (await import('./index.js')).render({text: 'Look', look: 'gold', size: 20})));
  const native = path.join(folder, 'look.gif');
  execFileSync(program, ['--look', 'gold', '--size', '20', '-q', '-o', native, 'Look'], {env: {...process.env, GLYPHMOTION_HOME: folder}});
  assert.ok(readFileSync(native).equals(Buffer.from(bytes)));
  await page.context().close();
});

for (const [name, headers] of [['without isolation', {}], ['isolated', kIsolation]]) {
  test(`${name}: a text becomes the native program's GIF, the dialogs wait, and work is kept`, {timeout: 300000}, async t => {
    const {close, base} = await serve(headers);
    t.after(close);
    const page = await openPage(base);
    const asked = [];
    page.on('request', request => asked.push(request.url()));
    assert.equal(await page.evaluate(() => crossOriginIsolated), name === 'isolated');
    await built(page);
    await page.fill('#text', 'Größe');
    await page.locator('#effects .tile', {has: page.getByText('Laser', {exact: true})}).click();
    await page.waitForFunction(() => window.glyphmotion.document.effect === 'Laser' && window.glyphmotion.document.text === 'Größe');
    await built(page);

    const file = event => page.evaluate(async order => {
      const {message, payload} = await window.glyphmotion.request(order);
      return {...message, bytes: Array.from(payload)};
    }, event);
    const own = path.join(folder, 'own.gm4'), native = path.join(folder, 'native');
    writeFileSync(own, Buffer.from((await file({op: 'save', copy: true})).bytes));
    for (const [format, extension] of [['gif', '.gif'], ['apng', '.png']]) {
      execFileSync(program, ['--document', own, '-q', '-o', native + extension], {env: {...process.env, GLYPHMOTION_HOME: folder}});
      const made = await file({op: 'export', format});
      assert.ok(readFileSync(native + extension).equals(Buffer.from(made.bytes)), `${format}: ${made.error ?? 'other bytes'}`);
    }
    assert.equal(Buffer.from((await file({op: 'export', format: 'frames'})).bytes).toString('latin1', 0, 2), 'PK');
    assert.deepEqual(await page.evaluate(() => window.glyphmotion.hello.formats), ['gif', 'apng', 'webp']);

    // A font file for this document, which the workers of its animation get; then one for all, with which the engine
    // starts anew on the same document.
    const font = [...readFileSync(fileURLToPath(new URL('../fonts/two_squares.ttf', import.meta.url)))];
    const families = () => page.evaluate(() => window.glyphmotion.main.order.find(facts => facts.label === 'Font').items.length);
    const before = await families();
    const upload = bytes => page.evaluate(async given => {
      const model = window.glyphmotion, name = await model.connection.upload(new Blob([new Uint8Array(given)]));
      model.post({op: 'font', name: 'squares.ttf', upload: name}, model.main);
    }, bytes);
    await upload(font);
    await becomes(async () => (await state(page)).font, 'squares.ttf');
    await built(page);
    await page.evaluate(() => window.glyphmotion.post({op: 'font'}, window.glyphmotion.main));
    await becomes(async () => (await state(page)).font, '');
    await page.evaluate(bytes => window.glyphmotion.connection.addFonts([{name: 'squares.ttf', blob: new Blob([new Uint8Array(bytes)])}]), font);
    await becomes(families, before + 1);
    await becomes(async () => (await state(page)).text, 'Größe');
    await built(page);

    // A dialog within the dialog, and a question within that one.
    const fill = page.locator('.section.fill .material').first();
    await fill.locator('.kinds').selectOption({index: 1});
    await fill.locator('.swatch').click();
    await page.locator('dialog.t9995').getByRole('radio', {name: 'Conical'}).check();
    await settled(page);
    await page.keyboard.press('Escape');
    await page.locator('dialog.t9995').waitFor({state: 'detached'});

    await page.fill('#text', 'Kept');
    await becomes(async () => (await state(page)).text, 'Kept');
    await page.waitForTimeout(1000);  // the database is written a moment later
    await page.evaluate(() => navigator.serviceWorker.ready);
    await page.reload();
    await page.waitForSelector('body.ready');
    await becomes(async () => (await state(page)).text, 'Kept');
    await built(page);
    close();
    await page.reload();
    await page.waitForSelector('body.ready');
    await becomes(async () => (await state(page)).text, 'Kept');
    await built(page);
    assert.deepEqual(asked.filter(address => !address.startsWith(base) && !address.startsWith('blob:') && !address.startsWith('data:')), []);
    assert.deepEqual(page.said, []);
    await page.context().close();
  });
}
