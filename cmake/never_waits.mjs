// Writes the names of the functions that never have a dialog's wait below them, for Asyncify to leave as they are: those
// of the libraries and of the folders below the dialogs. A name that a folder above shares is not among them.
// node never_waits.mjs NM OUTPUT, in the build folder
import { execFileSync } from 'node:child_process';
import { readdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';

const [nm, output] = process.argv.slice(2);
const kBelow = /glyphmotion\.dir\/(src\/(image|materials|text|effects|resources)|host\/encoders)\//;

/** @param {string} folder @returns {string[]} */
const objectsIn = (folder) => readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
  const name = path.join(folder, entry.name);
  return entry.isDirectory() ? objectsIn(name) : name.endsWith('.o') ? [name] : [];
});

/** @param {string[]} files @param {RegExp} kinds  @returns {Set<string>} */
function functionsOf(files, kinds) {
  const lines = execFileSync(nm, ['--demangle', '--defined-only', ...files], { encoding: 'utf8', maxBuffer: 1 << 28 }).split('\n');
  return new Set(lines.map((line) => line.match(/^\S+ (\w) (.+)$/)).filter((found) => found && kinds.test(found[1])).map((found) => found[2]));
}

const objects = ['glyphmotion', 'page'].flatMap((target) => objectsIn(`CMakeFiles/${target}.dir`));
const above = functionsOf(objects.filter((name) => !kBelow.test(name)), /[tTwW]/);
const libraries = readdirSync('.').filter((name) => /^libown_.*\.a$/.test(name));
const below = functionsOf([...libraries, ...objects.filter((name) => kBelow.test(name))], /[tT]/);
// The list's reader pairs brackets. Functions of one name in several files are numbered at the end.
const count = (/** @type {string} */ name, /** @type {RegExp} */ bracket) => (name.match(bracket) ?? []).length;
const isPaired = (/** @type {string} */ name) => count(name, /[<([{]/g) === count(name, /[>)\]}]/g) && name.length < 400 && !/operator|->/.test(name);
const names = [...below].filter((name) => !above.has(name) && isPaired(name)).sort().map((name) => (name.includes('(') ? `${name}*` : name));
writeFileSync(output, [...names, 'nlohmann::*', 'toml::*', 'OT::*', 'AAT::*', 'CFF::*'].join(','));
writeFileSync(`${output}_option`, `@${output}\n`);
