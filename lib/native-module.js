'use strict';

// Where the native module lies: beside this package's own files on a set-top box; in the build
// folder in a checkout, where QUIRAVENT_BUILD may name another one.

const fs = require('fs');
const path = require('path');

const root = path.join(__dirname, '..');

/** The module's file. Throws where there is none, naming the places. */
function findNativeModule() {
  const build = path.resolve(process.env.QUIRAVENT_BUILD || path.join(root, 'build', 'release'));
  const candidates = [root, build].map((folder) => path.join(folder, 'quiravent.node'));
  const found = candidates.find((file) => fs.existsSync(file));
  if (!found) {
    throw new Error(
      `quiravent: the native module is not built: none of ${candidates.join(', ')} exists. ` +
        "Build it with 'npm run build'."
    );
  }
  return found;
}

module.exports = { findNativeModule };
