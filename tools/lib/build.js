'use strict';

const fs = require('fs');
const path = require('path');
const { mustRun, root } = require('./run');

/** Makes the build folder of a preset where it is missing, and gives its path. */
function configure(preset) {
  const folder = path.join(root, 'build', preset);
  if (!fs.existsSync(path.join(folder, 'build.ninja'))) {
    mustRun('cmake', ['--preset', preset], { capture: true });
  }
  return folder;
}

/** Builds targets of a preset, all of them by default; configures first where that is due. */
function build(preset, targets) {
  const folder = configure(preset);
  const wanted = targets && targets.length > 0 ? ['--target'].concat(targets) : [];
  mustRun('cmake', ['--build', folder].concat(wanted));
}

module.exports = { build, configure };
