'use strict';

const fs = require('fs');
const path = require('path');
const { makeFiles } = require('../lib/made-files');
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

/** Draws the pictures of the sample application into a folder. */
function drawArtwork(folder) {
  const drawn = drawAll();
  const names = drawn.map((picture) => picture[0]);
  const sources = [JSON.stringify(drawn), fs.readFileSync(require.resolve('./encode'))];
  makeFiles(folder, names, sources, (work) => {
    console.log(`Drawing ${drawn.length} pictures into ${folder}`);
    drawn.forEach((picture) => encode(picture[1], path.join(work, picture[0]), work));
  });
}

module.exports = { drawArtwork };
