'use strict';

// What there is to play. A real application would get this from its server.

const path = require('path');

const folder = path.join(__dirname, '..', '..', 'build', 'media');

/** A film with an advertisement in its middle, at a position in ms. */
function sampleFilm(title) {
  const breaks = [{ at: 24000, url: path.join(folder, 'advertisement.mp4') }];
  return { title, url: path.join(folder, 'film.mp4'), breaks };
}

module.exports = { sampleFilm };
