'use strict';

const crypto = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { mustRun } = require('../lib/run');
const { drawBackground, drawPoster } = require('./poster');
const { encode } = require('./encode');
const catalogue = require('../../examples/home/catalogue.json');

/** All pictures of the catalogue: [file name, SVG text]. */
function drawAll() {
  const items = [].concat.apply(
    [],
    catalogue.rows.map((row) => row.items)
  );
  const posters = items.map((item) => [item.picture, drawPoster(item)]);
  return posters.concat([[catalogue.background, drawBackground()]]);
}

function digestOf(drawn) {
  const encoder = fs.readFileSync(require.resolve('./encode'));
  return crypto.createHash('sha256').update(JSON.stringify(drawn)).update(encoder).digest('hex');
}

function isUpToDate(folder, drawn, digest) {
  const stamp = path.join(folder, '.digest');
  if (!fs.existsSync(stamp) || fs.readFileSync(stamp, 'utf8') !== digest) return false;
  return drawn.every((picture) => fs.existsSync(path.join(folder, picture[0])));
}

/** Draws what is missing or has changed. A picture is never seen half written. */
function drawArtwork(folder) {
  const drawn = drawAll();
  const digest = digestOf(drawn);
  if (isUpToDate(folder, drawn, digest)) return;
  console.log(`Drawing ${drawn.length} pictures into ${folder}`);
  fs.mkdirSync(folder, { recursive: true });
  const work = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-artwork-'));
  try {
    drawn.forEach((picture) => encode(picture[1], path.join(work, picture[0]), work));
    const files = drawn.map((picture) => path.join(work, picture[0]));
    mustRun('cp', files.concat([folder]));
    fs.writeFileSync(path.join(folder, '.digest'), digest);
  } finally {
    mustRun('rm', ['-rf', work]);
  }
}

module.exports = { drawArtwork };
