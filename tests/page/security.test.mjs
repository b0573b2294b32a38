// SPDX-License-Identifier: MIT
// Who is not this person's own browser gets nothing: tried by hand-made requests.
import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import http from 'node:http';
import net from 'node:net';
import {after, before, test} from 'node:test';
import {startProgram} from './fixture.mjs';

let server, host, port, listening;
before(async () => {
  server = await startProgram();
  ({host, port} = new URL(server.base));
  // A page that listens, or the program would end with its last session.
  const {session} = JSON.parse((await ask('/api/session', {method: 'POST', body: '{}', headers: trusted()})).body);
  listening = http.get({host: '127.0.0.1', port, path: `/api/stream?session=${session}`, headers: {Host: host, ...trusted()}}, response => response.resume());
  listening.on('error', () => {});
});
after(async () => {
  listening.destroy();
  await server.stop();
});

/** @returns {Promise<{status: number, headers: any, body: string}>} */
const ask = (path, {method = 'GET', headers = {}, body} = {}) => new Promise((resolve, reject) => {
  const request = http.request({host: '127.0.0.1', port, path, method, headers: {Host: host, ...headers}}, response => {
    let text = '';
    response.on('data', chunk => { text += chunk; });
    response.on('end', () => resolve({status: response.statusCode, headers: response.headers, body: text}));
  });
  request.on('error', reject);
  request.end(body);
});
const trusted = () => ({'X-Glyphmotion-Token': server.token});

test('Another user, another origin and a rebound name are refused', async () => {
  const session = {method: 'POST', body: '{}'};
  assert.equal(server.token.length, 32);
  assert.equal((await ask('/api/session', {...session, headers: trusted()})).status, 200);
  session.body = '{"listen": true}';
  const rows = [
    ['no token', {}],
    ['a wrong token', {'X-Glyphmotion-Token': `${server.token.slice(0, -1)}x`}],
    ['a shorter token', {'X-Glyphmotion-Token': server.token.slice(0, -1)}],
    ['another origin', {...trusted(), Origin: 'http://example.org'}],
    ['the null origin', {...trusted(), Origin: 'null'}],
    ['another port of this machine', {...trusted(), Origin: 'http://127.0.0.1:1'}],
    ['a rebound name', {...trusted(), Host: `attacker.example:${port}`}],
    ['no port', {...trusted(), Host: '127.0.0.1'}],
    ['a cross-site fetch', {...trusted(), 'Sec-Fetch-Site': 'cross-site'}],
  ];
  for (const [what, headers] of rows) assert.equal((await ask('/api/session', {...session, headers})).status, 403, what);
  for (const path of ['/api/stream?session=1', '/api/events?session=1', '/api/upload?session=1', '/api/leave?session=1']) {
    assert.equal((await ask(path, {method: path.includes('stream') ? 'GET' : 'POST'})).status, 403, path);
  }
  assert.equal((await ask('/', {headers: {Host: `attacker.example:${port}`}})).status, 403);
});

test('The page comes with a policy without exceptions, and nothing outside its folder comes at all', async () => {
  const page = await ask('/', {headers: {'Accept-Encoding': 'gzip, deflate, br'}});
  assert.equal(page.status, 200);
  assert.equal(page.headers['content-encoding'], undefined);  // the loopback carries bytes faster than anything packs them
  const policy = page.headers['content-security-policy'];
  assert.match(policy, /default-src 'none'/);
  assert.doesNotMatch(policy, /unsafe|\*|https?:/);
  assert.doesNotMatch(page.body, /<script(?![^>]*src=)|style=|onclick/);
  assert.equal(page.headers['x-content-type-options'], 'nosniff');
  assert.equal(page.headers['access-control-allow-origin'], undefined);
  for (const path of ['/../tlmplgm4.mtx', '/%2e%2e/tlmplgm4.mtx', '/js/../../tlmplgm4.mtx', '/..%2ftlmplgm4.mtx', '/etc/passwd']) {
    assert.ok((await ask(path)).status >= 400, path);
  }
});

test('Only loopback listens, and the token is in no argument of a process', () => {
  const sockets = readFileSync('/proc/net/tcp', 'latin1').split('\n').map(line => line.trim().split(/\s+/)[1] || '');
  const mine = sockets.filter(local => local.endsWith(`:${Number(port).toString(16).toUpperCase().padStart(4, '0')}`));
  assert.ok(mine.some(local => local.startsWith('0100007F')));
  assert.ok(!mine.some(local => local.startsWith('00000000')));
  assert.ok(!readFileSync(`/proc/${server.child.pid}/cmdline`, 'latin1').includes(server.token));
});

test('Too much, too slow and too many are turned away, and the program goes on', async () => {
  const session = JSON.parse((await ask('/api/session', {method: 'POST', body: '{}', headers: trusted()})).body).session;
  const events = body => ask(`/api/events?session=${session}`, {method: 'POST', body, headers: trusted()}).then(r => r.status, () => 413);
  assert.equal(await events('[{"op":"type","id":52,"text":"Hi"}]'), 204);
  for (const body of ['nonsense', '{}', '[[[[', '']) assert.equal(await events(body), 400, body);
  for (const body of ['[1,null,"x",{}]', '[{"op":7,"id":"x"}]', '[{"op":"choose","id":-5,"index":1e99}]', '[{"op":"mouse","id":101,"what":"down","x":1e300}]',
    '[{"op":"face","id":25,"width":1e9,"height":3}]', '[{"op":"open","name":"../../x","document":"nothing"}]', '[{"op":"rescue","key":"../../etc/passwd","keep":true}]',
    '[{"op":"thumbs","effects":[99,-1,"a"],"text":3}]', '[{"op":"apply","words":["--record","/tmp/evil"]}]', '[{"op":"export","format":"../x"}]', '[{"op":"answer","ask":1}]']) {
    assert.equal(await events(body), 204, body);
  }
  assert.equal(await events(`[${'0,'.repeat(3 << 20)}0]`), 413);
  const big = await ask(`/api/upload?session=${session}`, {method: 'POST', headers: trusted(), body: Buffer.alloc(40 << 20)}).then(r => r.status, () => 413);
  assert.equal(big, 413);
  const slow = net.connect(Number(port), '127.0.0.1');
  const started = Date.now();
  const drip = setInterval(() => slow.write('G'), 500);
  await new Promise(resolve => slow.on('close', resolve).on('error', () => {}));
  clearInterval(drip);
  assert.ok(Date.now() - started < 20000);
  const keys = new Set();
  let refused = 0;
  for (let i = 0; i < 20; i++) {
    const answer = await ask('/api/session', {method: 'POST', body: '{}', headers: trusted()});
    if (answer.status === 503) refused++;
    else keys.add(JSON.parse(answer.body).session);
  }
  assert.ok(keys.size <= 16 && refused >= 4);
  assert.equal((await ask('/')).status, 200);
});
