// SPDX-License-Identifier: MIT
// The manual's sentences about effects and options, taken from the manual itself.
import {make} from './dom.js';

/** @param {string} text */
const plain = text => text.toLowerCase().replace(/[^a-z0-9]+/g, ' ').trim();

export class Help {
  constructor() {
    /** @type {Map<string, string>} */
    this.sentences = new Map();
    /** @type {Document|null} */
    this.page = null;
  }

  /** @param {import('./connection.js').Connection} connection */
  async load(connection) {
    const response = await connection.call('/help');
    const words = (await response.text()).replace(/<style[\s\S]*?<\/style>| style="[^"]*"/g, '');
    this.page = new DOMParser().parseFromString(words, 'text/html');
    for (const section of this.page.querySelectorAll('section')) {
      const name = plain(section.querySelector('h3, h2')?.textContent || '');
      const about = section.querySelector(':scope > p')?.textContent || '';
      this.sentences.set(name, about.trim());
      for (const term of section.querySelectorAll(':scope > dl > dt')) {
        const words = (term.nextElementSibling?.textContent || '').trim();
        for (const one of this.names(term.textContent || '')) {
          this.sentences.set(`${name}/${one}`, words);
          if (!this.sentences.has(`/${one}`)) this.sentences.set(`/${one}`, words);
        }
      }
    }
  }

  /** "Beam 1 to 5" names five, "Light fill, Dark fill" two. @param {string} term */
  names(term) {
    const range = /^(.*?)(\d) to (\d)$/.exec(term);
    if (!range) return term.split(/,| and /).map(plain);
    return Array.from({length: Number(range[3]) - Number(range[2]) + 1}, (_, i) => plain(range[1] + (Number(range[2]) + i)));
  }

  /** @param {string} effect */
  effect(effect) { return this.sentences.get(plain(effect)) || ''; }

  /** @param {string} effect @param {string} label */
  option(effect, label) {
    return this.sentences.get(`${plain(effect)}/${plain(label)}`) || this.sentences.get(`/${plain(label)}`) || '';
  }

  /** A topic of the manual as elements. @param {string} topic */
  topic(topic) {
    const section = this.page?.getElementById(topic.split('#').pop() || '') || this.page?.querySelector('main');
    const body = make('div', {class: 'manual'});
    if (section) body.append(...[...section.childNodes].map(node => document.importNode(node, true)));
    for (const element of body.querySelectorAll('[id], [style], script')) {
      element.removeAttribute('id');
      element.removeAttribute('style');
      if (element.localName === 'script') element.remove();
    }
    for (const link of body.querySelectorAll('a')) link.replaceWith(...link.childNodes);
    return body;
  }
}
