'use strict';

// Turns SVG text into PNG, JPEG or WebP with the tools of librsvg2-bin, webp and
// libjpeg-turbo-progs. cjpeg reads no PNG, so dwebp hands it the pixels.

const fs = require('fs');
const path = require('path');
const { mustRun } = require('../lib/run');

const call = (program, words) => mustRun(program, words, { capture: true });

function toPng(source, target) {
  call('rsvg-convert', ['--output', target, source]);
}

function toWebp(png, target) {
  call('cwebp', ['-quiet', '-q', '86', '-m', '4', png, '-o', target]);
}

function toJpeg(png, target) {
  const [plain, pixels] = [`${png}.webp`, `${png}.ppm`];
  call('cwebp', ['-quiet', '-lossless', '-z', '0', png, '-o', plain]);
  call('dwebp', ['-quiet', '-ppm', plain, '-o', pixels]);
  call('cjpeg', ['-quality', '88', '-optimize', '-outfile', target, pixels]);
}

const encoders = { '.jpg': toJpeg, '.webp': toWebp };

/** Writes a picture; its format is that of the name's ending. work: a folder for what lies between. */
function encode(svg, target, work) {
  const ending = path.extname(target);
  const source = path.join(work, `${path.basename(target)}.svg`);
  fs.writeFileSync(source, svg);
  const png = ending === '.png' ? target : `${source}.png`;
  toPng(source, png);
  if (ending !== '.png') encoders[ending](png, target);
}

module.exports = { encode };
