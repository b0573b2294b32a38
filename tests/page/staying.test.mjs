// SPDX-License-Identifier: MIT
// What stays when something goes: tabs, the line to the program, the program itself.
import assert from 'node:assert/strict';
import {existsSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, test} from 'node:test';
import {becomes, closeBrowser, newFolder, openPage, settled, startProgram, state} from './fixture.mjs';

after(closeBrowser);

test('A killed program offers the unsaved document at its next start', async () => {
  const home = newFolder();
  const first = await startProgram({home});
  const page = await openPage(first.address);
  await page.fill('#text', 'Not saved');
  await page.waitForFunction(() => window.glyphmotion.document.text === 'Not saved');
  first.child.kill('SIGKILL');
  await first.ended;
  await page.locator('#banner').waitFor();
  await page.context().close();
  const second = await startProgram({home});
  const again = await openPage(second.address);
  await again.getByRole('button', {name: 'Open it'}).click();
  await again.waitForFunction(() => window.glyphmotion.document.text === 'Not saved');
  assert.equal((await state(again)).saved, false);
  await again.context().close();
  await second.stop();
});

test('Tabs have dialogs of their own, a reload keeps its own, and the last one ends the program', async () => {
  const server = await startProgram();
  const one = await openPage(server.address), two = await openPage(server.address);
  await one.fill('#text', 'One');
  await two.fill('#text', 'Two');
  await settled(one);
  await settled(two);
  await one.addInitScript(() => {  // the words of a field at the moment from which it takes keys
    new MutationObserver(([{target}]) => { window.words = target.value; }).observe(document, {subtree: true, attributeFilter: ['readonly']});
  });
  await one.reload();
  await one.waitForSelector('body.ready');
  assert.equal(await one.evaluate(() => window.words), 'One');
  assert.equal((await state(one)).text, 'One');
  assert.equal((await state(two)).text, 'Two');
  const editor = one.locator('dialog.t9995');
  await one.locator('.section.fill .material .swatch').first().click();
  await editor.waitFor();
  await one.reload();
  await editor.waitFor();
  await one.waitForFunction(() => window.glyphmotion.document.text === 'One');  // behind an editor, too
  await one.keyboard.press('Escape');
  await editor.waitFor({state: 'detached'});
  const copy = await one.context().newPage();
  await copy.addInitScript(key => sessionStorage.setItem('session', key), await one.evaluate(() => window.glyphmotion.hello.session));
  await copy.goto(server.address);
  await copy.waitForSelector('body.ready');
  assert.notEqual((await state(copy)).text, 'One');  // a duplicated tab does not take the other's line away
  await copy.close();
  await two.route('**/api/events*', route => route.abort(), {times: 1});
  await two.fill('#text', 'Two times');
  await two.waitForFunction(() => window.glyphmotion.document.text === 'Two times');
  await one.context().close();
  await two.fill('#text', 'Still here');
  await settled(two);
  await two.context().close();
  const code = await Promise.race([server.ended, new Promise(resolve => setTimeout(() => resolve('it lives'), 25000))]);
  assert.equal(code, 0);
});

test('A file that was on its way when the line was cut is given up, and the next one comes', async () => {
  const server = await startProgram(), page = await openPage(server.address);
  await settled(page);
  const download = page.locator('#download'), busy = () => download.getAttribute('aria-busy');
  await page.route('**/api/events*', route => (route.request().postData().includes('export') ? route.fulfill({status: 204}) : route.fallback()));
  await download.click();
  await becomes(busy, 'true');
  await page.evaluate(async () => {  // another listener takes the stream over
    const {connection} = window.glyphmotion;
    const other = await connection.call('/api/session', {method: 'POST', body: JSON.stringify({session: connection.session, listen: true})});
    await other.body.cancel();
  });
  await page.locator('.toast', {hasText: 'was cut'}).waitFor();
  assert.equal(await busy(), null);
  await page.unroute('**/api/events*');
  await page.locator('#banner').waitFor({state: 'hidden'});
  const file = page.waitForEvent('download');
  await download.click();
  assert.match((await file).suggestedFilename(), /\.gif$/);
  await page.context().close();
  await server.stop();
});

test('A document given at the start is opened and saved where it is', async () => {
  const folder = newFolder(), file = join(folder, 'mine.gm4');
  const maker = await startProgram();
  const page = await openPage(maker.address);
  await page.fill('#text', 'From a file');
  await settled(page);
  const text = await page.evaluate(async () => new TextDecoder().decode((await window.glyphmotion.request({op: 'save', copy: true})).payload));
  writeFileSync(file, text);
  await page.context().close();
  await maker.stop();
  const server = await startProgram({words: [file]});
  // Also a page that had its session with an earlier program is the first of this one.
  const session = '0123456789abcdef', again = await openPage(server.address, {session});
  assert.equal(await again.evaluate(() => window.glyphmotion.hello.session), session);
  assert.equal((await state(again)).text, 'From a file');
  await again.fill('#text', 'And changed');
  await settled(again);
  await again.keyboard.press('Control+s');
  await again.waitForFunction(() => window.glyphmotion.document.saved);
  assert.ok(existsSync(file));
  const drop = await again.evaluateHandle(document => {
    const data = new DataTransfer();
    data.items.add(new File([document], 'dropped.gm4'));
    return data;
  }, text);
  await again.dispatchEvent('body', 'drop', {dataTransfer: drop});
  await again.waitForFunction(() => window.glyphmotion.document.text === 'From a file');
  assert.equal((await state(again)).name, 'dropped.gm4');
  const menu = async (name, opened) => {
    await again.locator('#files').click();
    await again.getByRole('menuitem', {name}).click();
    await again.waitForFunction(text => window.glyphmotion.document.text === text, opened);
  };
  await menu(/^New$/, 'Glyphmotion');
  await menu(/^mine/, 'And changed');  // one of the last documents
  again.once('filechooser', chooser => chooser.setFiles({name: 'chosen.gm4', mimeType: '', buffer: Buffer.from(text)}));
  await menu(/^Open/, 'From a file');
  assert.equal((await state(again)).name, 'chosen.gm4');
  assert.deepEqual(again.said, []);
  await again.context().close();
  await server.stop();
});
