'use strict';

// Libraries that the device opens when they are first wanted, spoilt.

const { spawnSync } = require('child_process');
const path = require('path');

/** The full names of this machine's libraries whose files are called like that. */
function installed(pattern) {
  const words = spawnSync('/sbin/ldconfig', ['-p'], { encoding: 'utf8' }).stdout.split(/\s+/);
  return words.filter((word) => word.startsWith('/') && pattern.test(path.basename(word)));
}

/**
 * Has `spoil` put a file in the place of each library of FFmpeg's containers and of curl, in a
 * folder that the loader is to look into before others.
 */
function spoilLibraries(folder, spoil) {
  const names = installed(/^lib(avformat|curl|curl-gnutls)\.so\.\d+$/).map((one) =>
    path.basename(one)
  );
  new Set(names).forEach((name) => spoil(path.join(folder, name)));
}

module.exports = { installed, spoilLibraries };
