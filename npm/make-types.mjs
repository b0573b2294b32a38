// Prints the package's types, from the library's own table of options: node npm/make-types.mjs PACKAGE
import path from 'node:path';
import { pathToFileURL } from 'node:url';

const { openModule } = await import(pathToFileURL(path.resolve(process.argv[2], 'module.js')).href);
const { module } = await openModule('engine');
const table = module.ccall('GlyphmotionOptionTable', 'string', [], []);
const kAbsent = ['avif', 'webm'];  // formats of libraries that the modules are built without

/** @param {string} line */
function field(line) {
  const [name, help, minimum, maximum, words, kind] = line.split('\t');
  const isNumber = Number(maximum) > Number(minimum);
  const literals = words.split(',').filter((word) => word && !(name === 'format' && kAbsent.includes(word))).map((word) => `'${word}'`);
  const types = [...(isNumber ? ['number'] : []), ...literals, ...(kind === 'flag' ? ['boolean'] : [])];
  if (kind === 'repeats') types.push('string', 'string[]', 'Record<string, string | number | boolean>');
  const range = isNumber ? `, ${minimum} to ${maximum}` : '';
  return `  /** ${help}${range} */\n  '${name}'?: ${types.join(' | ') || 'string | number'};\n`;
}

process.stdout.write(`// Generated from the library's table of options.

export interface RenderOptions {
  /** UTF-8, 4,096 characters at most; each line break begins a new line */
  text?: string;
  /** Files that other options name: documents, fonts, pictures */
  files?: Record<string, Uint8Array | ArrayBuffer | string>;
  /** Called with one sentence where the result differs from what was asked for */
  onNote?: (note: string) => void;
  /** A job that has not begun when this is aborted does not begin */
  signal?: AbortSignal;
${table.trimEnd().split('\n').map(field).join('')}}

/** The bytes of a picture file, a GIF without \`format\`. Rejects with one sentence that says what is wrong. */
export function render(options?: RenderOptions): Promise<Uint8Array>;
`);
