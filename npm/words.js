// @ts-check
// A job's names are the program's long options, so that it alone knows what they mean.

/** What only the program itself has a use for, or the package sets. */
export const ownOptions = ['output', 'frames-as', 'text-file', 'quiet', 'progress', 'version', 'help', 'list', 'settings'];

/**
 * @param {Record<string, any>} options
 * @returns {string[]} the words of a command line
 */
export function wordsOf(options) {
  const words = [];
  for (const [name, value] of Object.entries(options)) {
    if (value === undefined || name === 'text' || name === 'files' || name === 'onNote') continue;
    if (ownOptions.includes(name)) throw new TypeError(`'${name}' is not an option of render`);
    if (value === true) words.push(`--${name}`);
    else if (value === false) words.push(`--no-${name}`);
    else if (Array.isArray(value)) for (const each of value) words.push(`--${name}=${each}`);
    else if (typeof value === 'object') for (const [key, each] of Object.entries(value)) words.push(`--${name}=${key}=${typeof each === 'boolean' ? Number(each) : each}`);
    else words.push(`--${name}=${value}`);
  }
  if (options.text !== undefined) words.push('--', String(options.text));
  return words;
}
