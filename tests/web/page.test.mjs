// The page as a static folder in Chromium, once with and once without the headers that isolate it: what it makes is what
// the native program makes, nothing leaves the browser, and work outlives a reload and a lost net.
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {createServer} from 'node:http';
import {tmpdir} from 'node:os';
import path from 'node:path';
import {after, test} from 'node:test';
import {fileURLToPath} from 'node:url';
import {becomes, built, closeBrowser, openPage, program, settled, state} from '../page/fixture.mjs';

const root = fileURLToPath(new URL('../../build/web/page', import.meta.url));
const folder = mkdtempSync(path.join(tmpdir(), 'glyphmotion-web-'));
const kPlace = '/tools/animated-text/';  // the page lives in any folder
const kTypes = {'.html': 'text/html', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css', '.svg': 'image/svg+xml', '.wasm': 'application/wasm', '.webmanifest': 'application/manifest+json'};
const kIsolation = {'Cross-Origin-Opener-Policy': 'same-origin', 'Cross-Origin-Embedder-Policy': 'require-corp'};
after(async () => {
  await closeBrowser();
  rmSync(folder, {recursive: true});
});

/** A server that knows files and nothing else. */
async function serve(headers) {
  const server = createServer((request, response) => {
    const {pathname} = new URL(request.url, 'http://localhost');
    const name = path.join(root, path.normalize(pathname.slice(kPlace.length - 1).replace(/\/$/, '/index.html')));
    try {
      if (!pathname.startsWith(kPlace)) throw new Error('outside');
      const bytes = readFileSync(name);
      response.writeHead(200, {...headers, 'Content-Type': kTypes[path.extname(name)] || 'application/octet-stream'}).end(bytes);
    } catch {
      response.writeHead(404).end();
    }
  });
  await new Promise(resolve => server.listen(0, '127.0.0.1', resolve));
  return {server, base: `http://127.0.0.1:${server.address().port}${kPlace}`};
}

for (const [name, headers] of [['without isolation', {}], ['isolated', kIsolation]]) {
  test(`${name}: a text becomes the native program's GIF, the dialogs wait, and work is kept`, {timeout: 300000}, async t => {
    const {server, base} = await serve(headers), close = () => server.close() && server.closeAllConnections();
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
