'use strict';

// The pictures as they are drawn again and again: posters with round corners, in full size and in the
// size in which they rest, and the background in the screen's size. To scale and to round them once is
// much quicker than for each frame.

const { createCanvas, fade, fillRounded } = require('./shapes');
const { colors, poster, screen } = require('./theme');
const { Pen } = require('./pen');

const paints = ['#274060', '#4a3b5c', '#1f5f5b', '#6b4226', '#5a2a3c', '#33532f'];

/** The tile of an item without a picture: its title on a colour that goes with it. */
function drawStandIn(tile, item, fonts) {
  const { w, h } = poster.full;
  const pen = new Pen(tile, fonts);
  const sum = Array.from(item.id).reduce((total, letter) => total + letter.charCodeAt(0), 0);
  fillRounded(tile, paints[sum % paints.length], 0, 0, w, h, poster.radius);
  pen.fill('#ffffff33', 36, 96, 64, 6);
  const lines = pen.wrap('title', item.title, w - 72, 5);
  pen.lines('title', colors.text, lines, 36, 160, 46);
}

/** Draws a picture of any size over the tile, so that it is filled and nothing is distorted. */
function drawPicture(tile, picture) {
  const { w, h } = poster.full;
  const size = picture.getSize();
  const scale = Math.min(size.w / w, size.h / h);
  const part = { w: Math.round(w * scale), h: Math.round(h * scale) };
  part.x = Math.round((size.w - part.w) / 2);
  part.y = Math.round((size.h - part.h) / 2);
  fillRounded(tile, '#ffffff', 0, 0, w, h, poster.radius);
  // Draws only where something is already: within the round corners.
  tile.setPorterDuff('SRC_IN');
  tile.composeScaled(picture, { x: 0, y: 0, w, h }, part);
}

/** The two tiles of an item; picture is null where it couldn't be loaded. */
function makeTile(item, picture, fonts) {
  const full = createCanvas(poster.full.w, poster.full.h);
  if (picture) drawPicture(full, picture);
  else drawStandIn(full, item, fonts);
  const rest = createCanvas(poster.rest.w, poster.rest.h);
  rest.composeScaled(full);
  return { full, rest };
}

/**
 * The background of all pages, darker on the left and at the bottom, where text stands; without a
 * picture a plain colour.
 */
function makeBackdrop(picture) {
  const backdrop = createCanvas(screen.width, screen.height);
  backdrop.setColor(colors.background);
  backdrop.fillRect(0, 0, screen.width, screen.height);
  if (!picture) return backdrop;
  backdrop.composeScaled(picture);
  backdrop.compose(fade(colors.background, 800, screen.height, 190, 0, true), 0, 0);
  backdrop.compose(fade(colors.background, screen.width, 300, 0, 215), 0, 260);
  backdrop.setColor(`${colors.background}d7`);
  backdrop.fillRect(0, 560, screen.width, screen.height - 560);
  return backdrop;
}

module.exports = { makeBackdrop, makeTile };
