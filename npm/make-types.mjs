// Prints the package's types, from the program's own table of options: node npm/make-types.mjs PACKAGE
import { pathToFileURL } from 'node:url';
import { ownOptions } from './words.js';

const { createEngine } = await import(pathToFileURL(`${process.argv[2]}/index.js`).href);
const rows = (await createEngine()).options().filter((row) => row.group !== 'For hosts and tests' && !ownOptions.includes(row.name));
const typeOf = (row) => {
  const words = row.words ? row.words.split(',').map((word) => `'${word}'`).join(' | ') : '';
  if (row.name === 'set') return 'Record<string, string | number | boolean>';
  if (!row.form) return row.pair ? 'boolean' : 'true';
  if (row.maximum > row.minimum) return words ? `number | ${words}` : 'number';
  return words || (row.repeats ? 'string | string[]' : 'string | number');
};
const field = (row) => {
  const range = row.maximum > row.minimum ? ` (${row.minimum} to ${row.maximum})` : '';
  return `  /** ${row.help.replaceAll('*/', '*\\/')}${range} */\n  '${row.name}'?: ${typeOf(row)};\n`;
};
process.stdout.write(`// Generated from the program's table of options.

export interface RenderOptions {
  /** UTF-8, 4,096 characters at most; each line break begins a new line */
  text?: string;
  /** Files that other options name: documents, fonts, pictures */
  files?: Record<string, Uint8Array | string>;
  /** Called with one sentence where the result differs from what was asked for */
  onNote?: (note: string) => void;
${rows.map(field).join('')}}

/** The bytes of a picture file, a GIF without \`format\`. Rejects with one sentence that says what is wrong. */
export function render(options?: RenderOptions): Promise<Uint8Array>;

export interface Engine {
  FS: any;
  /** Runs the program with the words of its command line */
  run(words: string[]): Promise<{ code: number; errors: string[] }>;
}
export function createEngine(around?: {
  stdin?: () => number | null;
  stdout?: (byte: number) => void;
  stderr?: (byte: number) => void;
  environment?: Record<string, string>;
}): Promise<Engine>;
`);
