'use strict';

// Multiplexes for tests, and what their pictures tell.

const path = require('path');
const { spawnSync } = require('child_process');
const { buildFolder } = require('./files');

/**
 * Makes the multiplex in a folder; gives its path. It has two services: H.264 with captions, and MPEG-2
 * with DVB subtitles.
 */
function makeMultiplex(folder) {
  const description = path.join(__dirname, 'lineup.json');
  const file = path.join(folder, 'lineup.ts');
  const made = spawnSync(path.join(buildFolder, 'quiravent-lineup'), ['make', description, file]);
  if (made.status !== 0) throw new Error(`no multiplex: ${made.stderr || made.error}`);
  return file;
}

/**
 * The mark along the upper edge of a test picture that lies in a rectangle of the screen: 32 cells,
 * 1 0, 8 bits of the service, 16 of the picture's number, 4 of a check, 0 1. Undefined where there
 * is none.
 */
function readMark(screen, bounds) {
  const bits = [];
  for (let cell = 0; cell < 32; cell++) {
    const x = bounds.x + Math.floor(((cell + 0.5) * bounds.w) / 32);
    const color = screen.colorAt(x, bounds.y + Math.floor(bounds.h / 32));
    bits.push(parseInt(color.slice(3, 5), 16) > 128 ? 1 : 0);
  }
  const number = (from, count) =>
    bits.slice(from, from + count).reduce((sum, bit) => 2 * sum + bit);
  let check = 0;
  for (let at = 2; at < 26; at += 4) check ^= number(at, 4);
  const isFramed = bits[0] === 1 && bits[1] === 0 && bits[30] === 0 && bits[31] === 1;
  if (!isFramed || check !== number(26, 4)) return undefined;
  return { service: number(2, 8), number: number(10, 16) };
}

module.exports = { makeMultiplex, readMark };
