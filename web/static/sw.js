// SPDX-License-Identifier: MIT
// The page without a net: its files are kept, and fetched anew when this file names another version of them.
const kPage = `glyphmotion-${self.registration.scope} `;  // another folder of this host has its own
const kCache = `${kPage}VERSION`;
const kFirst = FILES;  // what a first visit needs; other fonts come as they are used

// A newer version waits until no tab shows the old one, so that no tab has files of both.
self.addEventListener('install', event => event.waitUntil(caches.open(kCache)
  .then(cache => cache.addAll(kFirst.map(file => new Request(file, {cache: 'no-cache'}))))));

self.addEventListener('activate', event => event.waitUntil(caches.keys()
  .then(names => Promise.all(names.filter(name => name.startsWith(kPage) && name !== kCache).map(name => caches.delete(name))))
  .then(() => self.clients.claim())));

self.addEventListener('fetch', event => {
  const {request} = event;
  if (request.method !== 'GET' || new URL(request.url).origin !== location.origin) return;
  event.respondWith((async () => {
    const cache = await caches.open(kCache);
    const kept = await cache.match(request, {ignoreSearch: true});
    if (kept) return kept;
    const fresh = await fetch(request);
    if (fresh.status === 200) await cache.put(request, fresh.clone()).catch(() => {});  // a full disk keeps nothing
    return fresh;
  })());
});
