'use strict';

// What the tuner receives in these examples: a file that `quiravent lineup make` makes of
// lineup.json, once; it takes a few seconds.

const { spawnSync } = require('child_process');
const fs = require('fs');
const path = require('path');

const description = path.join(__dirname, 'lineup.json');
const launcher = path.join(__dirname, '..', '..', 'cli', 'quiravent.js');
const file = path.join(__dirname, '..', '..', 'build', 'television', 'lineup.ts');

function isUpToDate() {
  if (!fs.existsSync(file)) return false;
  return fs.statSync(file).mtime >= fs.statSync(description).mtime;
}

function makeFolder(folder) {
  if (fs.existsSync(folder)) return;
  makeFolder(path.dirname(folder));
  fs.mkdirSync(folder);
}

/** The path of the multiplex, which is made unless it is there. Throws when it can't be. */
function makeMultiplex() {
  if (isUpToDate()) return file;
  makeFolder(path.dirname(file));
  const words = [launcher, 'lineup', 'make', description, file];
  const made = spawnSync(process.execPath, words, { encoding: 'utf8' });
  if (made.status === 0) return file;
  throw new Error(`the multiplex could not be made: ${String(made.stderr || made.error).trim()}`);
}

module.exports = { makeMultiplex };
