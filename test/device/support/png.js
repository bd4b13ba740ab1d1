'use strict';

// Reads the pictures of the screen that the desktop device writes: PNG in truecolour, 8 bits.

const fs = require('fs');
const zlib = require('zlib');

const SIGNATURE = Buffer.from([137, 80, 78, 71, 13, 10, 26, 10]);
const BYTES = 3;

function chunksOf(file) {
  const chunks = {};
  for (let at = SIGNATURE.length; at < file.length;) {
    const length = file.readUInt32BE(at);
    const name = file.toString('ascii', at + 4, at + 8);
    const data = file.slice(at + 8, at + 8 + length);
    chunks[name] = chunks[name] ? Buffer.concat([chunks[name], data]) : data;
    at += length + 12;
  }
  return chunks;
}

/** The predictor "Paeth": whichever neighbour is nearest to their gradient. */
function paeth(left, above, corner) {
  const estimate = left + above - corner;
  const [a, b, c] = [left, above, corner].map((value) => Math.abs(estimate - value));
  if (a <= b && a <= c) return left;
  return b <= c ? above : corner;
}

const predictors = [
  () => 0,
  (left) => left,
  (left, above) => above,
  (left, above) => (left + above) >> 1,
  paeth
];

/** Undoes the filters of the rows; each begins with the number of its own. */
function unfilter(data, stride, height) {
  const pixels = Buffer.alloc(stride * height);
  for (let y = 0; y < height; y++) {
    const predict = predictors[data[y * (stride + 1)]];
    for (let x = 0; x < stride; x++) {
      const at = y * stride + x;
      const left = x >= BYTES ? pixels[at - BYTES] : 0;
      const above = y > 0 ? pixels[at - stride] : 0;
      const corner = x >= BYTES && y > 0 ? pixels[at - stride - BYTES] : 0;
      pixels[at] = data[y * (stride + 1) + 1 + x] + predict(left, above, corner);
    }
  }
  return pixels;
}

/**
 * { width, height, colors, colorAt(x, y) }: colors is a Map of the number of pixels by colour; a
 * colour is "#rrggbb".
 */
function readPicture(path) {
  const file = fs.readFileSync(path);
  if (!file.slice(0, SIGNATURE.length).equals(SIGNATURE)) throw new Error(`${path} is no PNG`);
  const chunks = chunksOf(file);
  const [width, height] = [chunks.IHDR.readUInt32BE(0), chunks.IHDR.readUInt32BE(4)];
  const format = Array.from(chunks.IHDR.slice(8, 13)).join(' ');
  if (format !== '8 2 0 0 0') throw new Error(`${path} isn't 8 bit truecolour: ${format}`);
  const pixels = unfilter(zlib.inflateSync(chunks.IDAT), width * BYTES, height);
  const colors = new Map();
  const colorOf = (at) => `#${pixels.toString('hex', at, at + BYTES)}`;
  for (let at = 0; at < pixels.length; at += BYTES) {
    const color = colorOf(at);
    colors.set(color, (colors.get(color) || 0) + 1);
  }
  return { width, height, colors, colorAt: (x, y) => colorOf((y * width + x) * BYTES) };
}

module.exports = { readPicture };
