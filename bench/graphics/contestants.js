'use strict';

// Those who draw, each with what its scenes need: a canvas of the screen's size, pictures, a font.

const fs = require('fs');
const { loadCanvas, loadNapi } = require('../lib/peers');
const { promised } = require('../lib/promised');
const { ensurePictures, filesOf } = require('./pictures');

const WIDTH = 1280;
const HEIGHT = 720;
const FONT = '/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf';
const FONT_SIZE = 24;

/** Loads each set of pictures once. */
class Pictures {
  constructor(load) {
    this.load = load;
    this.sets = {};
  }

  async get(set) {
    if (!this.sets[set]) this.sets[set] = await Promise.all(filesOf(set).map(this.load));
    return this.sets[set];
  }
}

/** Our own side of a scene. */
async function openOurs() {
  const { graphicServices } = require('../..');
  const load = (file) => promised((done) => graphicServices.loadImage(file, done));
  const font = await promised((done) => graphicServices.loadFont(FONT, FONT_SIZE, done));
  return {
    name: 'quiravent',
    services: graphicServices,
    load,
    font,
    pictures: new Pictures(load),
    newCanvas: () => graphicServices.createCanvas(WIDTH, HEIGHT)
  };
}

/** A side with the canvas of browsers. settle: has all drawing done that was put off. */
function openBrowserLike(name, library, settings, settle) {
  const load = (file) => library.loadImage(fs.readFileSync(file));
  return {
    name,
    library,
    load,
    pictures: new Pictures(load),
    fontName: `${FONT_SIZE}px BenchSans`,
    newContext: () => {
      const context = library.createCanvas(WIDTH, HEIGHT).getContext('2d');
      return Object.assign(context, settings);
    },
    settle
  };
}

function openNapi() {
  const library = loadNapi();
  ensurePictures(library);
  library.GlobalFonts.registerFromPath(FONT, 'BenchSans');
  // It records what is drawn and draws when pixels are read: the cheapest way to have that done.
  return openBrowserLike('napi', library, {}, (context) => context.getImageData(0, 0, 1, 1));
}

/** Both settings of canvas: its own, and the fastest that there are. */
function openCanvases() {
  const library = loadCanvas();
  library.registerFont(FONT, { family: 'BenchSans' });
  const settle = () => {};
  const fastest = { patternQuality: 'fast', quality: 'fast', textDrawingMode: 'glyph' };
  return [
    openBrowserLike('canvas', library, {}, settle),
    openBrowserLike('canvas best', library, fastest, settle)
  ];
}

module.exports = { HEIGHT, WIDTH, openCanvases, openNapi, openOurs };
