'use strict';

// The module over a porting layer in which every call costs next to nothing.

const path = require('path');
const { spawnSync } = require('child_process');

const build = process.env.QUIRAVENT_BUILD || path.join(__dirname, '..', '..', 'build', 'release');
const layer = path.join(build, 'bench');

/** An add-on of the benchmarks. */
const loadAddon = (name) => require(path.join(layer, `${name}.node`));

/** Runs a table in a process over that layer: the loader reads the library path when it starts. */
function overEmptyLayer(file, main) {
  if (process.env.LD_LIBRARY_PATH === layer) return main();
  const env = Object.assign({}, process.env, { LD_LIBRARY_PATH: layer });
  const words = process.execArgv.concat(file, process.argv.slice(2));
  const child = spawnSync(process.execPath, words, { env, stdio: 'inherit' });
  return process.exit(child.status === null ? 1 : child.status);
}

module.exports = { loadAddon, overEmptyLayer };
