// SPDX-License-Identifier: MIT
// What the dialogs above the main one look like, by their templates. No page needs them before it is usable.
import {buildAbout, buildPosition, buildTexturePreview} from './small_layers.js';
import {buildFountainLibrary} from './fountain_library.js';
import {buildGeneric} from './generic_layer.js';
import {buildGradient} from './gradient_editor.js';
import {buildTexture} from './texture_editor.js';
import {buildTiles} from './tile_editor.js';

/** @typedef {(model: import('./model.js').Model, dialog: import('./model.js').Dialog, help: import('./help.js').Help) => HTMLElement} Build */

/** @type {{[template: number]: Build}} */
const kBuilders = {9995: buildGradient, 9998: buildTexture, 9981: buildTiles, 9997: buildFountainLibrary, 9996: buildPosition, 9994: buildTexturePreview, 9005: buildAbout};

/** @param {number} template @returns {Build} */
export const builderOf = template => kBuilders[template] || buildGeneric;
