'use strict';

// Script runtimes of other versions and processors, with their headers, from the npm packages that
// hold them. They are kept in a cache outside of the tree.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { buildIn, configureIn } = require('./build');
const { processors } = require('./processors');
const { mustRun, root } = require('./run');

const cache =
  process.env.QUIRAVENT_CACHE ||
  path.join(process.env.XDG_CACHE_HOME || path.join(os.homedir(), '.cache'), 'quiravent');

/** Unpacks the package that holds a runtime into a folder, which is there whole or not at all. */
function unpack(processor, version, folder) {
  const place = path.dirname(folder);
  mustRun('mkdir', ['-p', place], { capture: true });
  const work = mustRun('mktemp', ['-d', '-p', place], { capture: true }).stdout.trim();
  try {
    const words = ['pack', `node-linux-${processor}@${version}`, '--loglevel=error'];
    mustRun('npm', words.concat('--pack-destination', work), { capture: true });
    const archive = path.join(work, fs.readdirSync(work)[0]);
    mustRun('tar', ['-xzf', archive, '-C', work], { capture: true });
    fs.renameSync(path.join(work, 'package'), folder);
  } finally {
    mustRun('rm', ['-rf', work]);
  }
}

/**
 * Fetches a runtime unless it is in the cache.
 * @returns {{name: string, processor: object, program: string, headers: string}}
 */
function fetchRuntime(processor, version) {
  const name = `${processor}-${version}`;
  const folder = path.join(cache, 'runtimes', name);
  if (!fs.existsSync(path.join(folder, 'bin', 'node'))) {
    console.log(`Fetching runtime ${name}`);
    unpack(processor, version, folder);
  }
  return {
    name,
    processor: processors[processor],
    program: path.join(folder, 'bin', 'node'),
    headers: path.join(folder, 'include', 'node')
  };
}

/** Builds targets for a runtime in a folder of its own, which it answers. */
function buildFor(runtime, targets) {
  const folder = path.join(root, 'build', 'runtimes', runtime.name);
  configureIn(folder, [
    '--preset',
    runtime.processor.preset,
    `-DNODE_HEADERS=${runtime.headers}`,
    '-DQUIRAVENT_DESKTOP=OFF',
    '-DQUIRAVENT_RECORDER=ON',
    '-DQUIRAVENT_TESTS=OFF',
    '-DQUIRAVENT_BENCH=OFF'
  ]);
  buildIn(folder, targets, { capture: true });
  return folder;
}

/** Writes a program that runs a runtime, in its emulator if it needs one; answers its path. */
function writeStarter(runtime, folder) {
  const file = path.join(folder, 'runtime');
  const words = runtime.processor.emulator.concat(runtime.program);
  fs.writeFileSync(file, `#!/bin/sh\nexec ${words.join(' ')} "$@"\n`, { mode: 0o755 });
  return file;
}

module.exports = { buildFor, cache, fetchRuntime, writeStarter };
