// SPDX-License-Identifier: MIT
// How the page is for everyone, and how it bears two thousand random events.
import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import {createRequire} from 'node:module';
import {after, before, test} from 'node:test';
import {closeBrowser, openPage, settled, startProgram} from './fixture.mjs';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
let server, keeper;
before(async () => {
  server = await startProgram();
  keeper = await openPage(server.address);  // the program ends with its last tab
});
after(async () => {
  await keeper.context().close();
  await closeBrowser();
  await server.stop();
});

async function check(page, where) {
  // A layer that is still fading in has too little contrast.
  await page.evaluate(() => Promise.allSettled(document.getAnimations()
    .filter(each => each.effect.getComputedTiming().endTime !== Infinity).map(each => each.finished)));
  const found = await page.evaluate(() => window.axe.run(document, {resultTypes: ['violations']}).then(result => result.violations
    .filter(each => ['serious', 'critical'].includes(each.impact)).map(each => `${each.id}: ${each.nodes.slice(0, 3).map(node => node.html.slice(0, 110)).join(' | ')}`)));
  assert.deepEqual(found, [], where);
}

for (const colorScheme of ['light', 'dark']) {
  test(`Nothing serious is found by axe in the ${colorScheme} scheme, from 360 pixels of width up`, async () => {
    const page = await openPage(server.address, {colorScheme, bypassCSP: true});
    await page.addScriptTag({content: axe});
    for (const width of [1280, 800, 360]) {
      await page.setViewportSize({width, height: 800});
      await page.evaluate(() => document.querySelectorAll('details').forEach(each => { each.open = true; }));
      await settled(page);
      await check(page, `${width}`);
      const over = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
      assert.ok(over <= 0, `${over} pixels too wide at ${width}`);
    }
    for (const [kind, template] of [[1, 9995], [2, 9998], [3, 9981]]) {
      await page.locator('.section.fill .kinds').first().selectOption({index: kind});
      await settled(page);
      await page.locator('.section.fill .swatch').first().click();
      await page.locator(`dialog.t${template}`).waitFor();
      await settled(page);
      await check(page, `dialog ${template}`);
      await page.keyboard.press('Escape');
      await page.locator(`dialog.t${template}`).waitFor({state: 'detached'});
    }
    assert.deepEqual(page.said.filter(line => !line.includes('axe')), []);
    await page.context().close();
  });
}

test('Two thousand random events leave no message, no leak and a session that answers', async () => {
  const page = await openPage(server.address);
  const client = await page.context().newCDPSession(page);
  await client.send('HeapProfiler.enable');
  const heap = async () => {
    await client.send('HeapProfiler.collectGarbage');
    return page.evaluate(() => performance.memory.usedJSHeapSize);
  };
  const round = (count, seed) => page.evaluate(async ([events, start]) => {
    let at = start;
    const random = n => (at = (at * 1103515245 + 12345) & 0x7fffffff) % n;
    const {glyphmotion: model} = window;
    for (let i = 0; i < events; i++) {
      const dialog = model.top;
      const list = dialog.order.filter(f => f.visible && f.enabled && f.id > 0);
      const f = list[random(list.length)];
      const range = f.range || [0, 50, 0];
      const colour = `#${random(0xffffff).toString(16).padStart(6, '0')}`;
      const events = [{op: 'type', id: f.id, text: f.range ? String(range[0] + random(Math.min(range[1] - range[0], 40) + 1)) : 'abc'.repeat(random(4))},
        {op: 'choose', id: f.id, index: random(4)}, {op: 'colour', id: f.id, value: colour, index: random(3) - 1}, {op: 'direction', id: f.id, index: random(8)},
        {op: 'kind', id: f.id, kind: random(4)}, {op: 'edit', id: f.id}, {op: 'key', id: f.id, key: ['left', 'up', 'down', 'space'][random(4)]},
        {op: 'mouse', id: f.id, what: ['down', 'move', 'up'][random(3)], x: random(100), y: random(60)}, {op: 'effect', index: random(model.hello.effects.length), keep: true},
        {op: ['undo', 'redo'][random(2)]}, {op: 'marker', id: f.id, do: ['add', 'delete', 'move'][random(3)], index: random(3), position: random(256), value: colour}];
      const buttons = f.kind === 'button' && ![16, 36].includes(f.id) && dialog.level > 1;
      model.post(buttons ? {op: 'click', id: f.id} : events[random(events.length)], dialog);
      if (i % 10 === 0) await new Promise(resolve => setTimeout(resolve, 25));
      document.querySelector('dialog.ask .main, .menu button')?.click();
      if (model.top.level > 1 && random(4) === 0) model.post({op: 'click', id: 2}, model.top);
    }
  }, [count, seed]);
  await round(200, 7);
  await settled(page);
  await page.waitForFunction(() => !document.querySelector('.tile:not(.ready)'), null, {timeout: 90000});
  const start = await heap();
  for (let i = 1; i <= 9; i++) await round(200, i * 97);
  for (let i = 0; i < 6; i++) {
    await page.keyboard.press('Escape');
    await settled(page);
  }
  await page.evaluate(() => window.glyphmotion.post({op: 'new'}));
  await page.fill('#text', 'It answers');
  await page.waitForFunction(() => window.glyphmotion.document.text === 'It answers', null, {timeout: 30000});
  // Pictures that are still on their way come and go; what stays after half a minute is a leak.
  let grown = Infinity;
  for (let i = 0; i < 15 && grown >= 5e6; i++) {
    await page.waitForTimeout(2000);
    grown = (await heap()) - start;
  }
  assert.ok(grown < 5e6, `${grown} bytes`);
  assert.deepEqual(page.said, []);
  await page.context().close();
});
