'use strict';

const fs = require('fs');
const path = require('path');
const { mustRun, root } = require('./run');

/** Runs cmake on a build folder while nobody else does; another who builds there is waited for. */
function cmakeOn(folder, words, options) {
  fs.mkdirSync(path.dirname(folder), { recursive: true });
  mustRun('flock', [`${folder}.lock`, 'cmake'].concat(words), options);
}

/** Makes a build folder where it is missing; words: for cmake, a preset and what differs from it. */
function configureIn(folder, words) {
  if (fs.existsSync(path.join(folder, 'build.ninja'))) return;
  cmakeOn(folder, words.concat('-B', folder), { capture: true });
}

/** Builds targets in a build folder, all of them by default. */
function buildIn(folder, targets, options) {
  const wanted = targets && targets.length > 0 ? ['--target'].concat(targets) : [];
  cmakeOn(folder, ['--build', folder].concat(wanted), options);
}

/** Makes the build folder of a preset where it is missing, and gives its path. */
function configure(preset) {
  const folder = path.join(root, 'build', preset);
  configureIn(folder, ['--preset', preset]);
  return folder;
}

/** Builds targets of a preset, all of them by default; configures first where that is due. */
function build(preset, targets) {
  buildIn(configure(preset), targets);
}

module.exports = { build, buildIn, configure, configureIn };
