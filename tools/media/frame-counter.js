'use strict';

// The number that each picture of the sample media carries: white blocks for the bits that are set,
// the lowest on the left.

/** Pictures in a second. */
const rate = 25;

/** Where the blocks are in the pictures of the film, in its own pixels. */
const counter = { x: 960, y: 24, width: 256, height: 16, bits: 16 };

/**
 * The number that a picture on the screen carries.
 * @param screen of readPicture
 * @param bounds of the medium's picture on the screen
 * @param width of the medium's picture in its own pixels
 */
function readCounter(screen, bounds, width) {
  const scale = bounds.w / width;
  const y = Math.round(bounds.y + (counter.y + counter.height / 2) * scale);
  let number = 0;
  for (let bit = 0; bit < counter.bits; bit++) {
    const inPicture = counter.x + ((bit + 0.5) * counter.width) / counter.bits;
    const color = screen.colorAt(Math.round(bounds.x + inPicture * scale), y);
    if (parseInt(color.slice(1, 3), 16) > 128) number += Math.pow(2, bit);
  }
  return number;
}

/** The number of the picture that is seen at a position in ms. */
const numberAt = (position) => Math.floor((position * rate) / 1000);

module.exports = { counter, numberAt, rate, readCounter };
