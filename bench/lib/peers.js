'use strict';

// What a user would take instead, from npm, in a cache outside of the tree.

const fs = require('fs');
const path = require('path');
const { findNodeHeaders } = require('../../tools/node-headers');
const { mustRun } = require('../../tools/lib/run');
const { cache } = require('../../tools/lib/runtimes');

const PEERS = { '@napi-rs/canvas': '1.1.1', canvas: '3.2.3' };

const names = Object.keys(PEERS);
const folder = path.join(cache, 'bench', names.map((name) => PEERS[name]).join('-'));
const moduleFolder = (name) => path.join(folder, 'node_modules', name);

/** canvas is built against the libraries of this system, since its own would be downloaded. */
function buildCanvas() {
  const global = mustRun('npm', ['root', '-g'], { capture: true }).stdout.trim();
  const tool = path.join(global, 'npm', 'node_modules', 'node-gyp', 'bin', 'node-gyp.js');
  const headers = path.dirname(path.dirname(findNodeHeaders()));
  mustRun(process.execPath, [tool, 'rebuild', `--nodedir=${headers}`], {
    capture: true,
    cwd: moduleFolder('canvas')
  });
}

function installPeers() {
  const done = path.join(folder, 'complete');
  if (fs.existsSync(done)) return;
  console.log('Installing what is measured against (once, some minutes)');
  fs.mkdirSync(folder, { recursive: true });
  fs.writeFileSync(path.join(folder, 'package.json'), '{ "private": true }\n');
  const words = ['install', '--ignore-scripts', '--no-audit', '--no-fund', '--loglevel=error'];
  const packages = names.map((name) => `${name}@${PEERS[name]}`);
  mustRun('npm', words.concat(packages), { capture: true, cwd: folder });
  buildCanvas();
  fs.writeFileSync(done, '');
}

module.exports = {
  installPeers,
  loadNapi: () => require(moduleFolder('@napi-rs/canvas')),
  loadCanvas: () => require(moduleFolder('canvas')),
  moduleFolder,
  versions: PEERS
};
