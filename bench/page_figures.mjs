// SPDX-License-Identifier: MIT
// How quick the page is: node bench/page_figures.mjs [ROUNDS] prints a table of medians, with the load that the machine had.
// Where scripts/build-web has been run, the page with the engine in the browser is measured beside it.
import {execFileSync} from 'node:child_process';
import {existsSync, readFileSync} from 'node:fs';
import {createServer} from 'node:http';
import {loadavg} from 'node:os';
import {extname, join} from 'node:path';
import {built, closeBrowser, newFolder, openBrowser, openPage, program, settled, startProgram} from '../tests/page/fixture.mjs';

const rounds = Number(process.argv[2]) || 9;
const median = list => list.sort((a, b) => a - b)[list.length >> 1];
const home = newFolder(), document = join(home, 'default.gm4');

/** From a key in the text to the paint after the sample, and after the animation, of that text. */
async function keys(page) {
  const sample = [], playing = [];
  for (let i = 0; i < rounds; i++) {
    await built(page);
    await page.focus('#text');
    await page.keyboard.press('End');
    await page.evaluate(() => {
      const {connection, document: before} = window.glyphmotion, receive = connection.receive;
      const times = window.times = {key: 0, still: 0, build: 0};
      addEventListener('keydown', event => { times.key = event.timeStamp; }, {once: true, capture: true});
      const ends = [connection, connection.workshop?.build].filter(Boolean);  // in the browser, builds come from another worker
      const hear = (message, payload) => {
        receive(message, payload);
        const wanted = message.type === 'still' || (message.type === 'build' && message.state === 'done');
        if (!wanted || message.revision <= before.revision || times[message.type]) return;
        // The task after a frame's callbacks runs once that frame is painted.
        requestAnimationFrame(() => setTimeout(() => { times[message.type] ||= performance.now(); }));
        if (message.type === 'build') for (const end of ends) end.receive = receive;
      };
      for (const end of ends) end.receive = hear;
    });
    await page.keyboard.press(i % 2 ? 'Backspace' : 'x');
    await page.waitForFunction(() => window.times.build && window.times.still, null, {timeout: 60000});
    const {key, still, build} = await page.evaluate(() => window.times);
    sample.push(still - key);
    playing.push(build - key);
  }
  return [median(sample), median(playing)];
}

/** Frames a second while a marker of a gradient follows the pointer for two seconds. */
async function drag(page) {
  await page.locator('.section.fill .kinds').first().selectOption({index: 1});
  await settled(page);
  await page.locator('.section.fill .swatch').first().click();
  const layer = page.locator('dialog.t9995');
  await layer.getByRole('radio', {name: 'Multi-color'}).check();
  await layer.getByRole('button', {name: 'Add a color'}).click();
  await settled(page);
  const marker = await layer.locator('.marker').nth(1).boundingBox(), strip = await layer.locator('.fountain-strip').boundingBox();
  await page.mouse.move(marker.x + marker.width / 2, marker.y + marker.height / 2);
  await page.mouse.down();
  await page.evaluate(() => {
    window.painted = 0;
    window.began = performance.now();
    const count = () => { window.painted++; window.frame = requestAnimationFrame(count); };
    count();
  });
  for (const until = Date.now() + 2000; Date.now() < until;) await page.mouse.move(strip.x + strip.width * (0.3 + 0.4 * ((Date.now() / 1000) % 1)), marker.y + 8);
  const rate = await page.evaluate(() => {
    cancelAnimationFrame(window.frame);
    return window.painted * 1000 / (performance.now() - window.began);
  });
  await page.mouse.up();
  return rate;
}

/** From the opening of the address of a program that has just started to text that takes keys and a painted sample, and to the animation. */
async function ready() {
  const times = [], playing = [];
  for (let i = 0; i < rounds; i++) {
    const server = await startProgram(), page = await (await (await openBrowser()).newContext()).newPage();
    await page.waitForTimeout(2000);  // a new window of the browser has work of its own
    await page.goto(server.address);
    await built(page);
    playing.push(await page.evaluate(() => performance.now()));
    await page.waitForFunction(() => performance.getEntriesByName('ready').length);
    times.push(await page.evaluate(() => performance.getEntriesByName('ready')[0].startTime));
    await page.context().close();
    await server.stop();
  }
  return [median(times), median(playing)];
}

/** @param {string[]} words  a job, saved as the document that the page opens */
async function withJob(words, work) {
  execFileSync(program, [...words, '--save-document', document], {env: {...process.env, GLYPHMOTION_HOME: home}});
  const server = await startProgram({words: [document]}), page = await openPage(server.address);
  const figures = await work(page, server);
  await page.context().close();
  await server.stop();
  return figures;
}

const kStatic = new URL('../build/web/page', import.meta.url).pathname;

/** The same keys where the engine is in the browser: the sample, and the animation. */
async function inTheBrowser(words) {
  const types = {'.html': 'text/html', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css', '.wasm': 'application/wasm'};
  const server = createServer((request, response) => {
    const name = join(kStatic, new URL(request.url, 'http://localhost').pathname.replace(/\/$/, '/index.html'));
    if (!existsSync(name)) return response.writeHead(404).end();
    response.writeHead(200, {'Content-Type': types[extname(name)] || 'application/octet-stream'}).end(readFileSync(name));
  });
  await new Promise(resolve => server.listen(0, '127.0.0.1', resolve));
  execFileSync(program, [...words, '--save-document', document], {env: {...process.env, GLYPHMOTION_HOME: home}});
  const page = await openPage(`http://127.0.0.1:${server.address().port}/`);
  await page.evaluate(text => window.glyphmotion.post({op: 'open', name: 'job.gm4', document: text}), readFileSync(document, 'latin1'));
  await settled(page);
  const figures = await keys(page);
  await page.context().close();
  server.close();
  return figures;
}

const load = () => loadavg()[0].toFixed(1);
const before = load();
const [sample56] = await withJob(['Glyphmotion', '-s', '56'], keys);
const [, playing] = await withJob(['This space for rent...'], keys);
const [shown, moving] = await ready();
const rate = await withJob(['Glyphmotion'], drag);
const web = existsSync(kStatic) && await inTheBrowser(['This space for rent...']);
console.log(`Load ${before} to ${load()}, medians of ${rounds}\n
| | Measured | Aim |
|---|---|---|
| Key press to the repainted sample, 56 pixels | ${sample56.toFixed(0)} ms | 100 ms |
| Key press to the playing animation, default job | ${playing.toFixed(0)} ms | 400 ms |
| Page ready: text that takes keys, the sample painted | ${shown.toFixed(0)} ms | 300 ms |
| Its animation plays | ${moving.toFixed(0)} ms | |
| Frames a second while a marker is dragged | ${rate.toFixed(0)} | 60 |${web ? `
| The engine in the browser, default job: key press to the repainted sample | ${web[0].toFixed(0)} ms | 150 ms |
| The same, to the playing animation | ${web[1].toFixed(0)} ms | |` : ''}`);
await closeBrowser();
