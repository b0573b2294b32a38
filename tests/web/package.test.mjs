// The package for Node against the native program: the same words, the same bytes.
import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { render } from '../../build/web/npm/index.js';

const root = fileURLToPath(new URL('../..', import.meta.url));
const native = process.env.GLYPHMOTION_PROGRAM ?? path.join(root, 'build/release/glyphmotion');
const folder = mkdtempSync(path.join(tmpdir(), 'glyphmotion-web-'));
after(() => rmSync(folder, { recursive: true }));
// The native program sees the package's fonts alone, too.
const fonts = path.join(folder, 'fonts.conf');
writeFileSync(fonts, `<fontconfig><dir>${path.join(root, 'build/web/npm/fonts')}</dir><cachedir>${folder}</cachedir>
  <include ignore_missing="yes">/etc/fonts/conf.d/30-metric-aliases.conf</include></fontconfig>`);
const environment = { ...process.env, GLYPHMOTION_HOME: folder, FONTCONFIG_FILE: fonts };
const run = (program, words) => spawnSync(program, words, { cwd: folder, env: environment, encoding: 'utf8' });

// The same options as words of the program.
function wordsOf({ text, ...options }) {
  const words = [];
  for (const [name, value] of Object.entries(options)) {
    if (typeof value === 'boolean') words.push(value ? `--${name}` : `--no-${name}`);
    else if (typeof value === 'object') for (const [key, each] of Object.entries(value)) words.push(`--${name}=${key}=${Number(each)}`);
    else words.push(`--${name}=${value}`);
  }
  return [...words, '--', text];
}

function nativeBytes({ files, ...options }) {
  for (const [name, bytes] of Object.entries(files ?? {})) writeFileSync(path.join(folder, name), bytes);
  const output = path.join(folder, 'native');
  execFileSync(native, ['--format', 'gif', '-o', output, ...wordsOf(options)].slice(options.format ? 2 : 0), { cwd: folder, env: environment, stdio: 'pipe' });
  return readFileSync(output);
}

const effects = execFileSync(native, ['--list', 'effects'], { encoding: 'utf8', env: environment }).trim().split('\n')
  .map((line) => line.trim().split(/\s/)[0]);

// Every kind of material, palette, file and edge of a letter.
const kSets = [
  {}, { format: 'png', alpha: true, size: 30 }, { format: 'webp', size: 24 }, { dither: true, bold: false, palette: 'safe216' },
  { fill: 'texture:Marble' }, { background: 'texture:Clouds', format: 'png' }, { fill: 'tile:Bricks', supercompress: true },
  { background: 'tile:Planks', palette: 'best' }, { fill: 'fountain:Candy,rotation=45', antialias: false },
  { background: 'fountain:Candy', format: 'png', 'alpha-background': true }, { fill: 'gradient:conical,#ff0000-#0000ff', dither: true, supercompress: true },
  { transparent: true, 'mask-background': true }, { transparent: true, dither: 'ordered', palette: 'gray-mix256' }, { lossy: 60, colors: 24 },
  { format: 'webp', lossy: 50, alpha: true }, { width: 180, height: 70, align: 'right', valign: 'top' }, { italic: true, pad: 9, space: 120, delay: '70ms' },
  { 'still-text': true, size: 27, pad: 0, 'add-comment': true }, { palette: 'bw', dither: 'stable' }, { format: 'png', 'true-color': true, font: 'Liberation Serif', loop: 3 },
];

test('every effect gives the native program\'s bytes with each set of options', async () => {
  assert.ok(effects.length > 1);
  const [, named] = /'effect'\?: (.*);/.exec(readFileSync(path.join(root, 'build/web/npm/index.d.ts'), 'utf8'));
  assert.deepEqual(named.split(' | '), effects.map((effect) => `'${effect}'`));
  const other = [];
  for (const effect of effects) {
    for (const set of kSets) {
      const options = { size: 20, effect, text: 'Wave "12"', ...set };
      if (!nativeBytes(options).equals(await render(options))) other.push(JSON.stringify(options));
    }
  }
  assert.deepEqual(other, []);
});

test('materials, files, several lines, shaped text and numbers as text come through', async () => {
  const picture = await render({ text: 'p', format: 'png', sample: true, size: 20 });
  const jobs = [
    { text: 'Two\nlines', 'line-space': 130, align: 'center', fill: 'texture:Marble', set: { MainPadding: 7, MainFontItalic: true } },
    { text: 'a\u0301\u202e\u05e9\u05dc\u05d5\u05dd', font: 'Times New Roman' },
    { text: 'Image', fill: 'image:p.png', files: { 'p.png': picture }, delay: '80ms' },
    { text: '-- x', font: 'Liberation Mono Bold Italic', background: 'gradient:linear,#000000-#00ff88', set: { 440: 40 } },
    { text: 'File', 'font-file': 'own.ttf', files: { 'own.ttf': readFileSync(path.join(root, 'tests/fonts/two_squares.ttf')) } },
  ];
  for (const job of jobs) assert.ok(nativeBytes(job).equals(await render(job)), JSON.stringify(job.text));
});

test('a wrong job is rejected with the program\'s sentence, and the next one runs', async () => {
  await assert.rejects(render({ text: 'x', effect: 'vortx' }), /there is no effect 'vortx'; did you mean 'vortex'\?/);
  await assert.rejects(render({ text: 'x', output: 'y.gif' }), /there is no option 'output'/);
  for (const name of ['', '..', 'a/b.png']) await assert.rejects(render({ files: { [name]: '' } }), /is not a file's name/);
  await assert.rejects(render(null), /takes an object of options/);
  await assert.rejects(render({ text: 'a\0b' }), /NUL character/);
  await assert.rejects(render({ signal: AbortSignal.abort() }), /abort/);
  const [first, second] = await Promise.all([render({ text: 'A' }), render({ text: 'B' })]);
  assert.notDeepEqual(first, second);
});

const requires = process.features.require_module || 'this Node does not require ES modules';
test('a script that requires the package renders, and a load that fails is tried again', {skip: requires !== true && requires}, () => {
  const script = `const { renameSync } = require('fs'), { render } = require('./build/web/npm/index.js');
    const index = 'build/web/npm/fonts/index.tsv', away = process.argv[1];
    renameSync(index, away);
    render().then(() => process.exit(3), () => {}).finally(() => renameSync(away, index)).then(() => render({ text: 'a' }));`;
  const run = spawnSync(process.execPath, ['-e', script, path.join(root, 'build/web/npm/fonts/away')], { cwd: root, encoding: 'utf8' });
  assert.deepEqual([run.status, run.stderr.replace(/\(node.*ExperimentalWarning.*\n.*\n/, '')], [0, '']);
});

test('the command is the program', {skip: !existsSync(path.join(root, 'build/web/npm/program.wasm')) && 'it was not built'}, () => {
  const command = path.join(root, 'build/web/npm/bin/glyphmotion.js');
  const words = ['Command', '-e', 'laser', '-o'];
  assert.equal(run(command, [...words, 'wasm.gif']).status, 0);
  assert.equal(run(native, [...words, 'native.gif']).status, 0);
  assert.ok(readFileSync(path.join(folder, 'wasm.gif')).equals(readFileSync(path.join(folder, 'native.gif'))));
  for (const wrong of [['x', '-o', 'x.bmp'], ['--list', 'effects'], ['--size', '3', 'x', '-o', 'x.gif']]) {
    const [ours, theirs] = [run(command, wrong), run(native, wrong)];
    assert.deepEqual([ours.status, ours.stdout, ours.stderr], [theirs.status, theirs.stdout, theirs.stderr]);
  }
});
