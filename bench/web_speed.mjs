// How fast the engine is as WebAssembly beside the native one: a GIF of each effect with its own settings.
//
//   node bench/web_speed.mjs [ROUNDS]
//
// Both make the GIF in a process that has made one before, on one thread: WholeGif of glyphmotion_bench, and render() of
// the package here, in turns. Prints the medians of ROUNDS (5) rounds in ms and their ratio. PACKAGE names the package's
// folder (build/web/npm), BENCH the benchmarks' program (build/release/bench/glyphmotion_bench).
import { execFileSync } from 'node:child_process';
import { join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';

const root = resolve(import.meta.dirname, '..');
const bench = process.env.BENCH ?? join(root, 'build/release/bench/glyphmotion_bench');
const { render } = await import(pathToFileURL(join(resolve(process.env.PACKAGE ?? join(root, 'build/web/npm')), 'index.js')).href);
const rounds = Number(process.argv[2] ?? 5);
const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

/** One round: at least a tenth of a second. */
const native = (name) => {
  const words = [`--benchmark_filter=^${name}$`, '--benchmark_min_time=0.1', '--benchmark_format=json'];
  const [{ cpu_time, bytes }] = JSON.parse(execFileSync(bench, words, { encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] })).benchmarks;
  return { ms: cpu_time, bytes };
};
const web = async (effect) => {
  const begin = process.cpuUsage();
  const { length } = await render({ text: 'This space for rent...', effect });
  const { user, system } = process.cpuUsage(begin);
  return { ms: (user + system) / 1000, bytes: length };
};

const names = execFileSync(bench, ['--benchmark_filter=^WholeGif/', '--benchmark_list_tests'], { encoding: 'utf8' }).trim().split('\n');
const ratios = [];
for (const name of names) {
  const effect = name.slice(name.indexOf('/') + 1).toLowerCase().replaceAll(' ', '-');
  const times = { native: [], web: [] };
  await web(effect);
  for (let round = 0; round < rounds; ++round) {
    const [here, there] = [native(name), await web(effect)];
    if (here.bytes !== there.bytes) throw new Error(`${effect}: ${here.bytes} bytes natively, ${there.bytes} here: other fonts?`);
    times.native.push(here.ms);
    times.web.push(there.ms);
  }
  const [here, there] = [median(times.native), median(times.web)];
  ratios.push(there / here);
  console.log(effect.padEnd(24), here.toFixed(0).padStart(6), there.toFixed(0).padStart(6), (there / here).toFixed(2).padStart(6));
}
const mean = ratios.reduce((a, b) => a + b) / ratios.length;
console.log(`on average ${mean.toFixed(2)}, at most ${Math.max(...ratios).toFixed(2)}, above 1.8: ${ratios.filter((ratio) => ratio > 1.8).length}`);
