'use strict';

// Files that tools make: once, and again when what they are made from has changed.

const crypto = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { mustRun } = require('./run');

function isUpToDate(folder, names, digest) {
  const stamp = path.join(folder, '.digest');
  if (!fs.existsSync(stamp) || fs.readFileSync(stamp, 'utf8') !== digest) return false;
  return names.every((name) => fs.existsSync(path.join(folder, name)));
}

/**
 * Has files in a folder made unless they are there, made from the same sources.
 * @param names of the files
 * @param sources texts or buffers that all of them depend on
 * @param make called with an empty folder of its own, to put the files there. What it has made
 *     replaces what was there only when all of it is complete.
 */
function makeFiles(folder, names, sources, make) {
  const hash = crypto.createHash('sha256');
  sources.forEach((source) => hash.update(source));
  const digest = hash.digest('hex');
  if (isUpToDate(folder, names, digest)) return;
  fs.mkdirSync(folder, { recursive: true });
  const work = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-made-'));
  try {
    make(work);
    const files = names.map((name) => path.join(work, name));
    mustRun('cp', files.concat([folder]));
    fs.writeFileSync(path.join(folder, '.digest'), digest);
  } finally {
    mustRun('rm', ['-rf', work]);
  }
}

module.exports = { makeFiles };
