'use strict';

// Prints the folder of the headers that belong to the runtime that runs this script. Looked for
// beside the runtime, then where Debian's libnode-dev puts them, then in the project's cache.

const fs = require('fs');
const path = require('path');

const prefix = path.dirname(path.dirname(fs.realpathSync(process.execPath)));

function candidates() {
  return [
    path.join(prefix, 'include', 'node'),
    '/usr/include/nodejs/src',
    '/usr/include/node',
    path.join(__dirname, '..', '.cache', `node-headers-${process.versions.node}`)
  ];
}

/** Tells whether the headers in a folder are those of exactly this runtime. */
function matches(folder) {
  let text;
  try {
    text = fs.readFileSync(path.join(folder, 'node_version.h'), 'utf8');
  } catch (error) {
    return false;
  }
  const part = (name) => Number((text.match(new RegExp(`#define ${name}\\s+(\\d+)`)) || [])[1]);
  const version = ['NODE_MAJOR_VERSION', 'NODE_MINOR_VERSION', 'NODE_PATCH_VERSION'].map(part);
  return version.join('.') === process.versions.node;
}

/** The folder, or null where there is none. */
function findNodeHeaders() {
  return candidates().find(matches) || null;
}

module.exports = { findNodeHeaders };

if (require.main === module) {
  const folder = findNodeHeaders();
  if (!folder) {
    process.stderr.write(`No headers of runtime ${process.versions.node} found.\n`);
    process.exit(1);
  }
  process.stdout.write(folder + '\n');
}
