'use strict';

// Loads the native module. Beside this package's own files on a set-top box; from the build folder
// in a checkout, where QUIRAVENT_BUILD may name another one.

const fs = require('fs');
const path = require('path');

const root = path.join(__dirname, '..');
const candidates = [
  path.join(root, 'quiravent.node'),
  path.join(process.env.QUIRAVENT_BUILD || path.join(root, 'build', 'release'), 'quiravent.node')
];

const found = candidates.find((file) => fs.existsSync(file));
if (!found) {
  throw new Error(
    `quiravent: the native module is not built: none of ${candidates.join(', ')} exists. ` +
      "Build it with 'npm run build'."
  );
}

module.exports = require(found);
