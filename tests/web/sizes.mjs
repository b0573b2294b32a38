// The sizes of what scripts/build-web builds, compressed as hosts send it, against the most that each may have.
import {readFileSync, readdirSync, statSync} from 'node:fs';
import path from 'node:path';
import {fileURLToPath} from 'node:url';
import {constants, brotliCompressSync, gzipSync} from 'node:zlib';

const root = fileURLToPath(new URL('../../build/web', import.meta.url));
const page = readdirSync(`${root}/page`, {recursive: true}).map(name => `page/${name}`).filter(name => statSync(path.join(root, name)).isFile());
const first = page.filter(name => !/^page\/(fonts\/Lib|fonts\/Lob|fonts\/LIC|sw\.js|LICENSE)/.test(name)).concat('page/fonts/LiberationSans-Bold.ttf');
const kBrotli = {params: {[constants.BROTLI_PARAM_QUALITY]: 11, [constants.BROTLI_PARAM_LGWIN]: 24}};

// What, its files, and the most KB with Brotli and with gzip.
const kLimits = [
  ['The engine of the package', ['npm/engine.wasm'], 700, 870],
  ['The engine of the page', ['page/engine/page.wasm'], 880, 1140],
  ['A first visit', first, 1150, 1450],
  ['The page with all its fonts', page, 2000, 2500],
];
for (const [what, names, brotli, gzip] of kLimits) {
  const files = names.map(name => readFileSync(path.join(root, name)));
  const size = pack => Math.ceil(files.reduce((sum, bytes) => sum + pack(bytes).length, 0) / 1000);
  const sizes = [size(bytes => brotliCompressSync(bytes, kBrotli)), size(bytes => gzipSync(bytes, {level: 9}))];
  console.log(`${what}: ${sizes[0]} KB with Brotli (${brotli} at most), ${sizes[1]} KB with gzip (${gzip} at most)`);
  if (sizes[0] > brotli || sizes[1] > gzip) process.exitCode = 1;
}
