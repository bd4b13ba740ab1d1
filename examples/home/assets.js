'use strict';

// Loads fonts and pictures in the background. A font that can't be loaded is an error, since nothing
// could be read; a picture that can't is left out.

const path = require('path');
const { graphicServices } = require('quiravent');
const { fontFile } = require('../fonts');

function loadFont(name, size) {
  const file = fontFile(name);
  return new Promise((resolve, reject) => {
    graphicServices.loadFont(file, size, (error, font) => {
      if (error) reject(new Error(`the font ${file} could not be loaded: ${error.message}`));
      else resolve(font);
    });
  });
}

/** A promise of all fonts of a theme, by the name of the style. */
function loadFonts(styles) {
  const fonts = {};
  const jobs = Object.keys(styles).map((style) =>
    loadFont(styles[style][0], styles[style][1]).then((font) => {
      fonts[style] = font;
    })
  );
  return Promise.all(jobs).then(() => fonts);
}

function loadPicture(file) {
  return new Promise((resolve) => {
    graphicServices.loadImage(file, (error, picture) => {
      resolve(error ? null : picture);
    });
  });
}

/**
 * Loads pictures from a folder, all at once.
 * @param onLoaded called for each with its name and the canvas, null where it couldn't be loaded
 * @returns a promise of the number of those that couldn't, when all of them are done
 */
function loadPictures(folder, names, onLoaded) {
  let missing = 0;
  const jobs = names.map((name) =>
    loadPicture(path.join(folder, name)).then((picture) => {
      if (!picture) missing++;
      onLoaded(name, picture);
    })
  );
  return Promise.all(jobs).then(() => missing);
}

module.exports = { loadFonts, loadPictures };
