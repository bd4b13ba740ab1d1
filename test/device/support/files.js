'use strict';

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const { buildFolder, projectFolder } = require('../../script/support/build');

const native = path.join(buildFolder, 'test', 'native');

/** A new folder that is gone when the test is over; t may be whatever has a teardown. */
function newFolder(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-test-'));
  t.teardown(() => spawnSync('rm', ['-rf', folder]));
  return folder;
}

module.exports = {
  newFolder,
  root: projectFolder,
  buildFolder,
  /** A medium that the native tests have made, by its name; and a multiplex. */
  medium: (name) => path.join(native, 'media', 'media', name),
  multiplex: (name) => path.join(native, 'television', 'multiplexes', name)
};
