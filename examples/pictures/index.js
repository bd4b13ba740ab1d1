'use strict';

// Pictures: loaded in the background, given round corners, scaled, turned and blended.
//
//   node examples/pictures [SECONDS]

const fs = require('fs');
const path = require('path');
const quiravent = require('quiravent');

const graphics = quiravent.graphicServices;
const screen = graphics.getTargetCanvas();
const folder = path.join(__dirname, '..', '..', 'build', 'artwork');
const names = ['le-renard-bleu.png', 'der-grosse-uebergang.jpg', 'der-baer-und-das-boot.webp'];

/** A promise of a picture; of a plain grey tile when it can't be loaded. */
function load(name) {
  return new Promise((resolve) => {
    graphics.loadImage(path.join(folder, name), (error, picture) => {
      if (error) console.error(`${name}: ${error.message}`);
      resolve(picture || greyTile());
    });
  });
}

function greyTile() {
  const tile = graphics.createCanvas(320, 480);
  tile.setColor('#3a4458');
  tile.fillRect(0, 0, 320, 480);
  return tile;
}

/**
 * Gives a picture round corners. An off-screen canvas starts out transparent: first the shape is
 * drawn on it, and then the picture in the mode "SRC_IN", which draws only where something is.
 */
function rounded(picture, radius) {
  const size = picture.getSize();
  const [right, bottom] = [size.w - radius, size.h - radius];
  const tile = graphics.createCanvas(size.w, size.h);
  tile.fillRect(radius, 0, size.w - 2 * radius, size.h);
  tile.fillRect(0, radius, size.w, size.h - 2 * radius);
  [
    [radius, radius],
    [right, radius],
    [right, bottom],
    [radius, bottom]
  ].forEach((corner) => tile.drawEllipse('fill', corner[0], corner[1], radius, radius, 0, 360));
  tile.setPorterDuff('SRC_IN');
  tile.compose(picture, 0, 0);
  // A picture that is no longer needed gives its memory back at once, not at the next collection.
  picture.release();
  return tile;
}

function draw(tiles) {
  screen.setColor('#0b1020');
  screen.fillRect(0, 0, 1280, 720);

  // As it is; half as large; only a part of it, enlarged.
  screen.compose(tiles[0], 80, 120);
  screen.composeScaled(tiles[1], { x: 440, y: 120, w: 160, h: 240 });
  screen.composeScaled(
    tiles[1],
    { x: 440, y: 384, w: 160, h: 216 },
    { x: 110, y: 150, w: 120, h: 162 }
  );

  // Turned about its own centre, in front of a translucent copy. Both settings stay until they are
  // set again.
  screen.setOpacity(0.4);
  screen.compose(tiles[2], 680, 120);
  screen.setOpacity(1);
  screen.setRotation(12);
  screen.compose(tiles[2], 820, 120);
  screen.setRotation(0);
  screen.flush();
}

if (!fs.existsSync(folder)) {
  console.error(`There are no pictures in ${folder}. Draw them with "node tools/draw-artwork.js".`);
}

Promise.all(names.map(load))
  .then((pictures) => {
    const tiles = pictures.map((picture) => rounded(picture, 24));
    draw(tiles);
    setTimeout(() => tiles, Number(process.argv[2] || 5) * 1000);
  })
  .catch((error) => {
    console.error(error);
    process.exitCode = 1;
  });
