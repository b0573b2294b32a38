// SPDX-License-Identifier: MIT
// The page in a real browser: what a person does with it, and what comes of it.
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {becomes, built, closeBrowser, facts, newFolder, openPage, program, settled, startProgram, state} from './fixture.mjs';

let server, page;
before(async () => {
  server = await startProgram();
  page = await openPage(server.address);
});
after(async () => {
  await closeBrowser();
  await server.stop();
});

const fillOf = () => page.evaluate(() => window.glyphmotion.main.order.find(f => f.section === 'fill' && f.kind === 'material' && f.visible).id);
const section = name => page.locator(`.section.${name}`);
const layer = template => page.locator(`dialog.t${template}`);
const fillRow = () => section('fill').locator('.material').first();

async function setKind(kind) {
  await fillRow().locator('.kinds').selectOption({index: kind});
  await settled(page);
}

async function openEditor(kind, template) {
  await setKind(kind);
  await fillRow().locator('.swatch').click();
  await layer(template).waitFor();
}

async function download(click) {
  const waiting = page.waitForEvent('download', {timeout: 120000});
  await click();
  return readFileSync(await (await waiting).path());
}

test('The page names every module that it begins with, so that none waits for another', () => {
  const web = new URL('../../web/', import.meta.url), html = readFileSync(new URL('index.html', web), 'utf8');
  const named = [...html.matchAll(/(?:src|modulepreload" href)="(js\/[^"]+)"/g)].map(found => found[1]);
  const needed = new Set(['js/line.js', 'js/main.js']);
  for (const name of needed) {
    for (const [, other] of readFileSync(new URL(name, web), 'utf8').matchAll(/^import .* from '\.\/(.+)';$/gm)) needed.add(`js/${other}`);
  }
  assert.deepEqual(named.sort(), [...needed].sort());
});

test('Typed text is in the document and in the picture, and each effect is chosen and built', async () => {
  await page.fill('#text', 'Größe');
  await page.getByRole('spinbutton', {name: 'Size'}).fill('24');
  await settled(page);
  await becomes(async () => (await state(page)).text, 'Größe');
  const names = await page.evaluate(() => window.glyphmotion.hello.effects);
  assert.equal(names.length, execFileSync(program, ['--list', 'effects']).toString().trim().split('\n').length);
  for (const name of names) {
    await page.locator('#effects .tile', {has: page.getByText(name, {exact: true})}).click();
    await page.waitForFunction(wanted => window.glyphmotion.document.effect === wanted, name);
    await built(page);
    assert.equal(await page.locator('.section.effect h2, .section.fill h2').first().isVisible(), true, name);
  }
  await page.locator('#effects .tile[aria-checked=true]').press('ArrowLeft');
  await page.waitForFunction(() => window.glyphmotion.document.effect === 'Vortex');
  assert.deepEqual(page.said, []);
});

test('Each kind of control is used by mouse and by keyboard', async () => {
  const shadow = section('shadow');
  const value = id => facts(page, id);
  await page.getByRole('radio', {name: 'Simple'}).click();
  await settled(page);
  for (const group of ['#effects', '#looks', '.chips']) {
    const stop = page.locator(`${group} [tabindex="0"]`), name = () => stop.evaluate(each => each.ariaLabel ?? each.textContent);
    assert.equal(await stop.count(), 1, group);
    const first = await name();
    await stop.press('ArrowRight');
    await becomes(() => stop.evaluate(each => each === document.activeElement), true);
    assert.notEqual(await name(), first);
    await page.keyboard.press('ArrowLeft');
    await becomes(name, first);
  }
  await becomes(async () => (await state(page)).effect, 'Simple');
  const size = page.getByRole('spinbutton', {name: 'Size'}), slider = page.getByRole('slider', {name: 'Size'});
  await size.fill('40');
  await settled(page);
  await becomes(async () => (await value(57)).text, '40');
  await slider.focus();
  await slider.press('ArrowRight');
  await settled(page);
  await becomes(async () => (await value(57)).text, '41');
  await size.fill('999');
  await size.blur();
  await settled(page);
  await becomes(async () => (await value(57)).text, '144');
  await size.fill('40');
  const bold = page.getByRole('checkbox', {name: 'Bold'});
  const before = await bold.isChecked();
  await bold.click();
  await bold.press('Space');
  await bold.press('Space');
  await settled(page);
  await becomes(async () => (await value(54)).check, !before);
  await page.getByRole('combobox', {name: 'Font'}).selectOption({index: 1});
  await settled(page);
  await becomes(async () => (await value(53)).selection, 1);
  const right = shadow.getByRole('radio', {name: 'down left'});
  await right.check({force: true});
  await settled(page);
  await right.press('ArrowDown');
  await settled(page);
  const direction = await page.evaluate(() => window.glyphmotion.main.order.find(f => f.kind === 'shadow-direction' && f.visible).index);
  assert.equal(direction, 6);
  await section('outline').getByRole('checkbox', {name: 'Outline on'}).check();
  await section('outline').locator('.hex').fill('#12ab9f');
  await settled(page);
  const outline = () => page.evaluate(() => window.glyphmotion.main.order.find(f => f.section === 'outline' && f.kind === 'colour' && f.visible).colour);
  await becomes(() => outline(), '#12ab9f');
  await section('outline').locator('input[type=color]').fill('#0000ff');
  await settled(page);
  await becomes(() => outline(), '#0000ff');
  await shadow.getByRole('checkbox', {name: 'Shadow on'}).uncheck();
  await becomes(() => shadow.locator('.inner').isHidden(), true);
  assert.deepEqual(page.said, []);
});

test('Every editor opens, changes, is cancelled and confirmed', async () => {
  const fill = await fillOf();
  const face = () => page.evaluate(() => document.querySelector('.section.fill .swatch-face')?.toDataURL());
  await setKind(0);
  await fillRow().locator('.hex').fill('#cc3300');
  await settled(page);
  await becomes(async () => (await facts(page, fill)).material.colour, '#cc3300');
  await openEditor(1, 9995);
  const before = await face();
  await layer(9995).getByRole('radio', {name: 'Multi-color'}).check();
  await layer(9995).getByRole('radio', {name: 'Conical'}).check();
  await layer(9995).getByRole('spinbutton', {name: 'Rotation'}).fill('77');
  const marker = layer(9995).getByRole('slider', {name: 'Color 2', exact: true});
  const markersOf = () => facts(page, 120).then(f => f.fountain.markers);
  await marker.focus();
  const [first] = (await markersOf())[0];
  await marker.press('ArrowRight');
  await settled(page);
  await becomes(async () => (await markersOf())[0][0], first + 1);
  const box = await marker.boundingBox(), strip = await layer(9995).locator('.fountain-strip').boundingBox();
  await page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
  await page.mouse.down();
  for (let i = 1; i <= 20; i++) await page.mouse.move(strip.x + strip.width * i / 40, box.y + 8);
  await page.mouse.up();
  await settled(page);
  await becomes(async () => (await markersOf()).some(([position]) => Math.abs(position - 128) < 4), true);
  const count = (await markersOf()).length, held = await marker.boundingBox();
  await page.mouse.move(held.x + held.width / 2, held.y + held.height / 2);
  await page.mouse.down();
  await page.mouse.move(held.x, held.y + 150);
  await marker.evaluate(each => {  // the browser takes the pointer away; the next press begins anew
    each.dispatchEvent(new PointerEvent('pointercancel', {pointerId: 1}));
    each.dispatchEvent(new PointerEvent('pointerdown', {pointerId: 1}));
    each.dispatchEvent(new PointerEvent('pointerup', {pointerId: 1}));
  });
  await page.mouse.up();
  await settled(page);
  assert.equal((await markersOf()).length, count);
  await layer(9995).locator('.fountain-strip').dblclick({position: {x: strip.width * 0.9, y: 10}});
  await settled(page);
  await becomes(async () => (await markersOf()).length, count + 1);
  await page.keyboard.press('Escape');
  await layer(9995).waitFor({state: 'detached'});
  await becomes(() => face(), before);
  await openEditor(1, 9995);
  await layer(9995).getByRole('radio', {name: 'Multi-color'}).check();
  await layer(9995).getByRole('button', {name: 'Library…'}).click();
  await page.getByRole('menuitem').nth(0).click();
  await layer(9995).getByText('The fountain is in the library now').waitFor();
  await layer(9995).getByRole('button', {name: 'Library…'}).click();
  await page.getByRole('menuitem').nth(1).click();
  await layer(9997).waitFor();
  await layer(9997).getByRole('option').nth(3).click();
  await layer(9997).getByRole('button', {name: 'Use'}).click();
  await layer(9997).waitFor({state: 'detached'});
  await layer(9995).locator('.marker').nth(1).click({button: 'right', force: true});
  await page.getByRole('menuitem').nth(2).click();
  await layer(9996).getByRole('spinbutton').fill('9');
  await layer(9996).locator('.ok').click();
  await layer(9996).waitFor({state: 'detached'});
  await settled(page);
  await becomes(async () => (await markersOf()).some(([position]) => position === 9), true);
  await layer(9995).locator('.ok').click();
  await layer(9995).waitFor({state: 'detached'});
  await settled(page);
  assert.notEqual(await face(), before);
  await openEditor(2, 9998);
  await layer(9998).getByRole('listbox', {name: 'Textures'}).selectOption({index: 4});
  await layer(9998).getByRole('combobox', {name: 'Type'}).selectOption('Perturbation').catch(() => layer(9998).getByRole('combobox', {name: 'Type'}).selectOption({index: 5}));
  await layer(9998).getByRole('application', {name: /^Red curve/}).press('ArrowUp');
  await layer(9998).getByRole('button', {name: 'See it in use'}).click();
  await layer(9994).locator('.ok').click();
  await layer(9994).waitFor({state: 'detached'});
  await layer(9998).getByRole('button', {name: 'Add this'}).click();
  await page.locator('dialog.ask .main').click();  // the shipped group is protected
  await becomes(() => page.evaluate(() => document.activeElement.textContent), 'Add this');
  await layer(9998).getByRole('button', {name: 'New group'}).click();
  await page.locator('dialog.ask input').fill('Mine');
  await page.locator('dialog.ask .main').click();
  await settled(page);
  await layer(9998).locator('.ok').click();
  await layer(9998).waitFor({state: 'detached'});
  await openEditor(3, 9981);
  await becomes(async () => (await facts(page, 102)).selection, 0);  // the tile that the picture shows
  await layer(9981).locator('.tile-item').nth(5).click();
  await settled(page);
  await becomes(async () => (await facts(page, 102)).selection, 5);
  await layer(9981).getByRole('button', {name: 'Cancel'}).click();
  await layer(9981).waitFor({state: 'detached'});
  await page.locator('#files').click();
  await page.getByRole('menuitem', {name: /About/}).click();
  await layer(9005).locator('.ok').click();
  await layer(9005).waitFor({state: 'detached'});
  assert.deepEqual(page.said, []);
});

test('What is downloaded is what the program makes of the saved document, and the command line says the same', async () => {
  await setKind(1);
  await built(page);
  const gif = await download(() => page.click('#download'));
  await page.locator('#files').click();
  const document = await download(() => page.getByRole('menuitem', {name: 'Save a copy'}).click());
  const folder = newFolder(), file = join(folder, 'a.gm4'), out = join(folder, 'a.gif');
  writeFileSync(file, document);
  execFileSync(program, ['--document', file, '-o', out, '-q'], {env: {...process.env, GLYPHMOTION_HOME: server.home}});
  assert.ok(gif.equals(readFileSync(out)), 'the document gives another picture');
  const run = async (extension = '.gif') => {
    const {command} = await state(page);
    assert.match(command, /untitled\.gif/);
    execFileSync('sh', ['-c', command.replace(/^glyphmotion/, program).replace('untitled.gif', `untitled${extension}`)], {cwd: folder, env: {...process.env, GLYPHMOTION_HOME: server.home}});
    return readFileSync(join(folder, `untitled${extension}`));
  };
  assert.ok(gif.equals(await run()), 'the command gives another picture');
  await page.fill('#text', ' =) two');
  await settled(page);
  await built(page);
  assert.deepEqual([(await state(page)).text, await page.inputValue('#text')], [' =) two', ' =) two']);
  assert.ok((await download(() => page.click('#download'))).equals(await run()), 'a blank and a sign in front');
  for (const kind of [2, 3]) {
    await setKind(kind);
    await built(page);
    assert.ok((await download(() => page.click('#download'))).equals(await run()), `kind ${kind}`);
  }
  await page.getByRole('spinbutton', {name: 'Size'}).fill('20');
  await page.getByRole('spinbutton', {name: 'Frames'}).fill('6');
  await settled(page);
  await built(page);
  const formats = await page.evaluate(() => window.glyphmotion.hello.formats);
  for (const [format, name, extension] of [['webp', 'Animated WebP', '.webp'], ['apng', 'Animated PNG', '.png'], ['avif', 'AVIF', '.avif'], ['webm', 'WebM video', '.webm'], ['frames', 'Frames']]) {
    if (format !== 'frames' && !formats.includes(format)) continue;  // built without its library
    await page.locator('#formats').click();
    const bytes = await download(() => page.getByRole('menuitem', {name}).click());
    if (extension) assert.ok(bytes.equals(await run(extension)), format);
    else assert.equal(bytes.toString('latin1').match(/PK\x01\x02[^]{42}[\w-]+\.png/g)?.length, Number((await page.locator('.counter').textContent()).split(' / ')[1]), 'files in the ZIP');
  }
});

test('Lines, a canvas and a loop are in the picture, the file and the command, and undo takes them back', async () => {
  await page.fill('#text', 'One');
  await page.locator('#text').press('End');
  await page.keyboard.press('Enter');
  await page.keyboard.type('Two');
  await becomes(async () => (await state(page)).text, 'One\u2028Two');
  await becomes(() => page.inputValue('#text'), 'One\nTwo');
  const canvas = section('canvas'), size = () => page.evaluate(() => [document.querySelector('.picture').width, document.querySelector('.picture').height].join());
  await built(page);
  const plain = await size();
  assert.equal(await canvas.getByRole('combobox', {name: 'If too large'}).isDisabled(), true);
  await canvas.getByRole('combobox', {name: 'Picture'}).selectOption({label: 'Leaderboard, 728 × 90'});
  await becomes(async () => / --width 728 --height 90 /.test((await state(page)).command), true);
  await canvas.getByRole('combobox', {name: 'Up and down'}).selectOption('Top');
  await canvas.getByRole('spinbutton', {name: 'Line spacing'}).fill('80');
  await section('output').evaluate(each => { each.open = true; });
  await section('output').getByRole('spinbutton', {name: 'Plays'}).fill('2');
  await becomes(async () => / --valign top --line-space 80 --loop 2 /.test((await state(page)).command), true);
  await built(page);
  await becomes(size, '728,90');
  const gif = await download(() => page.click('#download'));
  assert.deepEqual([gif.readUInt16LE(6), gif.readUInt16LE(8)], [728, 90]);
  assert.equal(gif.readUInt16LE(gif.indexOf('NETSCAPE2.0') + 13), 1);  // once more
  while (/ --width | --height | --loop /.test((await state(page)).command)) await page.locator('#undo').click().then(() => settled(page));
  await becomes(async () => (await state(page)).text, 'One\u2028Two');
  await built(page);
  await becomes(size, plain);
  assert.deepEqual(page.said, []);
});

test('Frames, zoom, backdrops and the clipboard show the picture as it is, and without a text there is none', async () => {
  const stage = page.locator('#stage'), counter = () => stage.locator('.counter').textContent(), press = name => stage.getByRole('button', {name, exact: true}).click();
  const pixel = () => stage.locator('canvas').evaluate(each => each.toDataURL());
  await page.getByRole('radio', {name: 'Vortex'}).click();
  await page.fill('#text', 'A "closer" look');
  await becomes(async () => (await state(page)).effect, 'Vortex');
  await built(page);
  await press('Pause');
  await stage.locator('.scrub').fill('3');
  const count = Number((await counter()).split(' / ')[1]), fourth = await pixel();
  assert.equal(await counter(), `4 / ${count}`);
  await press('One frame on');
  assert.equal(await counter(), `5 / ${count}`);
  assert.notEqual(await pixel(), fourth);
  await press('One frame back');
  assert.equal(await pixel(), fourth);
  await stage.locator('.scrub').fill('0');
  await press('One frame back');
  assert.equal(await counter(), `${count} / ${count}`);  // round the end
  const shown = () => stage.locator('canvas').evaluate(each => [(each.clientWidth / each.width).toFixed(1), getComputedStyle(each).imageRendering].join());
  await stage.locator('.zoom-text').click();
  assert.equal(await shown(), '1.0,pixelated');
  await press('Larger');
  assert.equal(await shown(), '1.5,pixelated');
  await press('Smaller');
  await press('Smaller');
  assert.equal(await shown(), '0.5,auto');
  await stage.locator('.zoom-text').click();
  const backdrop = () => stage.locator('.view').evaluate(each => getComputedStyle(each).backgroundImage);
  const seen = new Set();
  for (const name of ['White', 'Black', 'Page', 'Checks']) {
    await stage.getByRole('radio', {name}).check();
    seen.add(await backdrop());
  }
  assert.equal(seen.size, 4);
  assert.match(await backdrop(), /conic/);
  const menu = async name => {
    await page.locator('#formats').click();
    await page.getByRole('menuitem', {name}).click();
    await page.locator('.toast', {hasText: 'is on the clipboard'}).last().waitFor();
  };
  await menu('Copy this picture');
  const same = await page.evaluate(async () => {
    const [item] = await navigator.clipboard.read(), bitmap = await createImageBitmap(await item.getType('image/png'));
    const canvas = Object.assign(document.createElement('canvas'), {width: bitmap.width, height: bitmap.height});
    canvas.getContext('2d').drawImage(bitmap, 0, 0);
    return canvas.toDataURL() === document.querySelector('.picture').toDataURL();
  });
  assert.ok(same, 'the clipboard has another picture');
  await page.locator('.toast').last().waitFor({state: 'detached'});
  await menu('Copy HTML');
  const [width, height] = await stage.locator('canvas').evaluate(each => [each.width, each.height]);
  assert.equal(await page.evaluate(() => navigator.clipboard.readText()), `<img src="untitled.gif" width="${width}" height="${height}" alt="A &quot;closer&quot; look">`);
  await page.fill('#text', '');
  await stage.locator('.empty').waitFor();
  assert.deepEqual([await stage.locator('.facts').isVisible(), await page.locator('#download').isDisabled()], [false, true]);
  await page.fill('#text', 'Back');
  await built(page);
  await press('Play');
  const before = await counter();
  await page.waitForFunction(old => document.querySelector('.counter').textContent !== old, before);
  assert.deepEqual(page.said, []);
  // A line that is wider than a browser's canvas: it is in the document at once, the page says that it works, and shows how the line begins.
  const size = page.getByRole('spinbutton', {name: 'Size'}), small = await size.inputValue();
  await size.fill('72');
  await page.fill('#text', 'W'.repeat(3000));
  await becomes(async () => (await state(page)).text.length, 3000);
  await page.locator('#stage .busy:visible').waitFor();
  await page.waitForFunction(() => {
    const canvas = document.querySelector('#stage canvas');
    return canvas.width > 30000 && canvas.getContext('2d').getImageData(0, 0, 300, canvas.height).data.some(byte => byte > 0);
  }, null, {timeout: 60000});
  await page.fill('#text', 'Hi');
  await size.fill(small);
  await built(page);
});

test('A new animation takes the place of the one before without a flash', async () => {
  await built(page);
  await page.evaluate(() => {
    const canvas = document.querySelector('.picture'), context = document.createElement('canvas').getContext('2d', {willReadFrequently: true});
    window.seen = {frames: 0, empty: 0, on: true};
    const look = () => {
      seen.frames++;
      context.clearRect(0, 0, 1, 1);
      context.drawImage(canvas, 0, 0);
      if (!canvas.checkVisibility() || context.getImageData(0, 0, 1, 1).data[3] === 0) seen.empty++;
      if (seen.on) requestAnimationFrame(look);
    };
    look();
  });
  for (const text of ['A', 'A longer line of text', 'B']) {
    await page.fill('#text', text);
    await becomes(async () => (await state(page)).text, text);
    await built(page);
  }
  const {frames, empty} = await page.evaluate(() => Object.assign(seen, {on: false}));
  assert.ok(frames > 20, `${frames} frames`);
  assert.equal(empty, 0);
});

test('The palette is chosen in one place, in one step of undo', async () => {
  await section('output').evaluate(each => { each.open = true; });
  const palette = section('output').getByRole('combobox', {name: 'Palette'}), command = async () => (await state(page)).command;
  const before = await command(), chosen = () => palette.evaluate(each => each.selectedOptions[0].text);
  await becomes(chosen, 'Made for the picture');
  for (const name of ['Best colors, larger file', 'Best colors where it shows', 'Sixteen-color Windows']) {
    await palette.selectOption(name);
    await settled(page);
    await becomes(chosen, name);
    await page.locator('#undo').click();
    await becomes(command, before);
    await becomes(chosen, 'Made for the picture');
  }
  assert.deepEqual(page.said, []);
});

test('A font, lines and a picture are dropped on the page', async () => {
  const drop = (name, type, bytes) => page.evaluate(([file, kind, list]) => {
    const data = new DataTransfer();
    if (file) data.items.add(new File([new Uint8Array(list)], file, {type: kind}));
    else data.setData('text/plain', list);
    window.dispatchEvent(new DragEvent('drop', {dataTransfer: data, cancelable: true}));
  }, [name, type, bytes]);
  await drop('', '', '  First line\r\n\r\nAAA\n');
  await becomes(async () => (await state(page)).text, '  First line\u2028AAA'.trim());
  await drop('mine.ttf', 'font/ttf', [...readFileSync(new URL('../fonts/two_squares.ttf', import.meta.url))]);
  await becomes(async () => (await state(page)).font, 'mine.ttf');
  await becomes(() => section('letters').locator('.font-name').textContent(), 'mine.ttf');
  const {command} = await state(page), folder = newFolder();
  execFileSync('sh', ['-c', command.replace(/^glyphmotion/, program)], {cwd: folder, env: {...process.env, GLYPHMOTION_HOME: server.home}});
  await built(page);
  assert.ok((await download(() => page.click('#download'))).equals(readFileSync(join(folder, 'untitled.gif'))), command);
  await section('letters').getByRole('button', {name: 'Remove'}).click();
  await becomes(async () => (await state(page)).font, '');
  await drop('mine.exe', '', [77, 90, 0, 3]);
  await page.locator('.toast', {hasText: 'mine.exe is not a document'}).waitFor();
  await drop('none.gm4', '', [10]);
  await page.locator('.toast', {hasText: 'none.gm4 is empty'}).waitFor();
  await drop('long.txt', 'text/plain', Array(5000).fill(97));
  await page.locator('.toast', {hasText: 'A text has 4096 characters at most'}).waitFor();
  await page.fill('#text', 'AAA');
  await drop('mine.ttf', 'font/ttf', [1, 2, 3]);
  await page.locator('.toast', {hasText: "'mine.ttf' is not a font"}).waitFor();
  await drop('broken.png', 'image/png', [137, 80, 78, 71]);
  await page.locator('.toast', {hasText: 'broken.png is not a picture'}).waitFor();
  assert.equal(await layer(9981).count(), 0);
  const fill = await fillOf(), picture = await page.evaluate(async () => {
    const canvas = new OffscreenCanvas(9, 5);
    canvas.getContext('2d').fillRect(0, 0, 5, 5);
    return [...new Uint8Array(await (await canvas.convertToBlob()).arrayBuffer())];
  });
  await drop('tile.png', 'image/png', picture);
  await layer(9981).waitFor();
  await becomes(async () => (await page.evaluate(i => window.glyphmotion.main.get(i).material.kind, fill)), 3);
  await layer(9981).getByRole('button', {name: 'New group'}).click();
  await page.locator('dialog.ask input').fill('Dropped');
  await page.locator('dialog.ask .main').click();
  await settled(page);
  const tiles = await layer(9981).locator('.tile-item').count();
  await layer(9981).getByRole('button', {name: 'Add a picture'}).click();
  await becomes(() => layer(9981).locator('.tile-item').count(), tiles + 1);
  await layer(9981).getByRole('button', {name: 'Cancel'}).click();
  await layer(9981).waitFor({state: 'detached'});
  assert.deepEqual(page.said, []);
});

test('A look replaces everything but the text, and undo brings it back', async () => {
  const {text, effect} = await state(page);
  const gold = page.locator('#looks .tile.ready', {hasText: 'gold'}), picture = () => gold.locator('canvas').evaluate(each => each.toDataURL());
  await page.mouse.move(0, 0);
  const still = await picture();
  await gold.hover();
  const frames = new Set();
  while (frames.size < 4) frames.add(await picture());  // it plays when pointed at
  await page.mouse.move(0, 0);
  await becomes(picture, still);
  await gold.click();
  await becomes(async () => (await state(page)).effect, 'Laser');
  assert.equal((await state(page)).text, text);
  await becomes(async () => (await facts(page, 57)).text, '92');
  await page.click('#undo');
  await becomes(async () => (await state(page)).effect, effect);
  assert.deepEqual(page.said, []);
});

test('Undo goes back over 50 random changes, and redo on again', async () => {
  let seed = 12345;
  const random = n => (seed = (seed * 1103515245 + 12345) & 0x7fffffff) % n;
  const documents = [];
  // A fill's mean colour (bytes 1250 to 1253) is computed anew when its line is loaded, but not when its kind is changed; a
  // tile's bounds (from byte 1194) are those of what was drawn last.
  const text = async () => (await page.evaluate(async () =>
    new TextDecoder().decode((await window.glyphmotion.request({op: 'save', copy: true})).payload)))
    .replace(/^(MATLBT\d+=.{2388}).{32}(.{80}).{8}/gm, (_, head, rest) => head + '0'.repeat(32) + rest + '00000000');
  documents.push(await text());
  for (let i = 0; i < 50; i++) {
    await page.evaluate(([pick, value]) => {
      const {main} = window.glyphmotion;
      const controls = main.order.filter(f => f.visible && f.enabled && ['number', 'check', 'colour', 'material'].includes(f.kind));
      const f = controls[pick % controls.length];
      const colour = `#${(value % 0xffffff).toString(16).padStart(6, '0')}`;
      window.glyphmotion.post(f.kind === 'number' ? {op: 'type', id: f.id, text: String(f.range[0] + value % (Math.min(f.range[1], f.range[0] + 30) - f.range[0] + 1))}
        : f.kind === 'check' ? {op: 'click', id: f.id} : f.kind === 'colour' ? {op: 'colour', id: f.id, value: colour}
          : {op: 'kind', id: f.id, kind: value % 4}, main);
      window.glyphmotion.post({op: 'rename', name: 'untitled.gm4'}, main);  // nothing that is one step with the next
    }, [random(1000), random(1 << 24)]);
    const now = await text();
    if (now !== documents[documents.length - 1]) documents.push(now);
  }
  assert.ok(documents.length > 25);
  let now = documents[documents.length - 1], steps = 0;
  for (; now !== documents[0]; now = await text()) {
    const lines = new Set((documents[documents.length - 2 - steps] ?? documents[0]).split('\n'));
    if (!documents.includes(now)) assert.fail(`a state that never was: ${now.split('\n').filter(line => !lines.has(line))}`);
    assert.ok(steps++ <= documents.length, 'undo comes to the start');
    await page.keyboard.press('Control+z');
  }
  for (let i = 0; i < 80 && await page.locator('#redo').isEnabled(); i++) await page.locator('#redo').click().then(text);
  await becomes(() => page.evaluate(() => document.activeElement.id), 'undo');  // a button that goes off does not drop the focus
  await becomes(() => text(), documents[documents.length - 1]);
});
