// What the module expects of Node, which an ES module has to ask for.
let require, __dirname;
if (typeof process === 'object' && process.versions?.node) {
  const { createRequire } = await import(/* webpackIgnore: true */ 'node:module');
  const { fileURLToPath } = await import(/* webpackIgnore: true */ 'node:url');
  require = createRequire(import.meta.url);
  __dirname = fileURLToPath(new URL('.', import.meta.url));
}
