// SPDX-License-Identifier: MIT
// The main path in Firefox, which speaks WebDriver BiDi: type, choose, edit a fill, download.
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {existsSync, readFileSync, readdirSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {test} from 'node:test';
import puppeteer from 'puppeteer-core';
import {becomes, newFolder, program, startProgram} from './fixture.mjs';

const executablePath = process.env.FIREFOX || '/usr/bin/firefox-esr';
const skip = existsSync(executablePath) ? false : 'firefox-esr is not installed (scripts/install-packages page)';

test('Firefox: a text is typed, an effect chosen, a fill edited, and the GIF is the program\'s', {skip}, async () => {
  const downloads = newFolder(), server = await startProgram();
  const browser = await puppeteer.launch({
    browser: 'firefox',
    executablePath,
    extraPrefsFirefox: {'browser.download.folderList': 2, 'browser.download.dir': downloads, 'browser.helperApps.neverAsk.saveToDisk': 'image/gif,application/octet-stream'},
  });
  try {
    const page = await browser.newPage(), said = [];
    page.on('console', message => said.push(message.text()));
    page.on('pageerror', error => said.push(String(error)));
    await page.setViewport({width: 1280, height: 900});
    await page.goto(server.address);
    await page.waitForSelector('body.ready');
    const document = () => page.evaluate(() => structuredClone(window.glyphmotion.document));
    const built = () => page.waitForFunction(() => document.querySelector('#stage').dataset.revision === String(window.glyphmotion.document.revision), {timeout: 60000});
    await page.locator('#text').fill('Fire & fox');
    await becomes(async () => (await document()).text, 'Fire & fox');
    await page.locator('#effects .tile ::-p-text(Vortex)').click();
    await becomes(async () => (await document()).effect, 'Vortex');
    await page.select('.section.fill .material .kinds', await page.$eval('.section.fill .material .kinds option:nth-child(2)', option => option.value));
    await page.locator('.section.fill .swatch').click();
    await page.waitForSelector('dialog.t9995 .ok');
    await page.locator('dialog.t9995 .marker').wait();
    await page.focus('dialog.t9995 .marker');
    await page.keyboard.press('ArrowRight');
    await page.locator('dialog.t9995 .ok').click();
    await page.waitForSelector('dialog.t9995', {hidden: true});
    await built();
    await page.locator('#download').click();
    const gif = () => readdirSync(downloads).find(name => name.endsWith('.gif') && !existsSync(join(downloads, `${name}.part`)));
    await becomes(() => Boolean(gif()), true);
    const saved = await page.evaluate(async () => new TextDecoder('latin1').decode((await window.glyphmotion.request({op: 'save', copy: true})).payload));
    const file = join(downloads, 'a.gm4'), out = join(newFolder(), 'a.gif');
    writeFileSync(file, saved, 'latin1');
    execFileSync(program, ['--document', file, '-o', out, '-q'], {env: {...process.env, GLYPHMOTION_HOME: server.home}});
    assert.ok(readFileSync(join(downloads, gif())).equals(readFileSync(out)), 'the download differs from the program\'s file');
    assert.deepEqual(said, []);
  } finally {
    await browser.close();
    await server.stop();
  }
});
