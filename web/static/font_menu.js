// SPDX-License-Identifier: MIT
// The fonts of the person's computer, where the browser lends them.
import {make, toast} from '../js/dom.js';

/** @typedef {{family: string, fullName: string, postscriptName: string, blob: () => Promise<Blob>}} LocalFont */
/** @typedef {{addFonts: (fonts: {name: string, blob: Blob}[]) => Promise<void>}} Taker */

const kBrowser = /** @type {{queryLocalFonts?: () => Promise<LocalFont[]>}} */ (/** @type {unknown} */ (window));

/** Items of a menu. @param {Taker} taker */
export function fontItems(taker) {
  return kBrowser.queryLocalFonts ? [{text: 'Fonts of this computer…', action: () => chooseLocal(taker)}] : [];
}

/** @param {Taker} taker */
async function chooseLocal(taker) {
  let fonts;
  try {
    fonts = await /** @type {() => Promise<LocalFont[]>} */ (kBrowser.queryLocalFonts)();
  } catch {
    fonts = /** @type {LocalFont[]} */ ([]);
  }
  if (!fonts.length) return toast('The browser gives no access to the fonts of this computer; use a font file', 'error');
  const families = [...new Set(fonts.map(font => font.family))].sort((a, b) => a.localeCompare(b));
  const list = make('select', {size: 12, required: true, 'aria-label': 'Family'}, ...families.map(family => make('option', {}, family)));
  const box = make('dialog', {class: 'layer ask', 'aria-label': 'Fonts of this computer', onclose: () => box.remove()},
    make('form', {method: 'dialog', onsubmit: () => take(list.value)},
      make('p', {class: 'ask-text'}, 'Which family do you want to use? It is kept in this browser.'), list,
      make('div', {class: 'layer-buttons'}, make('button', {type: 'button', onclick: () => box.close()}, 'Cancel'), make('button', {class: 'main'}, 'Add'))));
  const take = async (/** @type {string} */ family) => {
    const styles = fonts.filter(font => font.family === family);
    await taker.addFonts(await Promise.all(styles.map(async font => ({name: `${font.postscriptName}.ttf`, blob: await font.blob()}))));
  };
  list.selectedIndex = 0;
  document.body.append(box);
  box.showModal();
}
