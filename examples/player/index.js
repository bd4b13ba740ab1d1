'use strict';

// A player for films: transport bar, languages, advertisements, the keys of a remote control.
//
//   node examples/player [FILM] [TITLE]
//
// FILM is a path or URL; without one it is the sample film of "node tools/make-media.js". Starts
// everything; page.js is where the player itself begins.

const fs = require('fs');
const path = require('path');
const quiravent = require('quiravent');
const { loadFonts } = require('../home/assets');
const { Pen } = require('../home/pen');
const { listen } = require('../home/remote');
const { Show } = require('../home/show');
const { accents, fonts } = require('../home/theme');
const { PlayerPage } = require('./page');
const { sampleFilm } = require('./programme');

function filmIn(words) {
  if (words.length > 0)
    return { title: words[1] || path.basename(words[0]), url: words[0], breaks: [] };
  const film = sampleFilm('Night over the Bay');
  if (fs.existsSync(film.url)) return film;
  throw new Error('there is no sample film. "node tools/make-media.js" makes it.');
}

function run(film, pen) {
  const app = {
    settings: { accent: accents.Amber },
    draw: (target) => app.page.draw(target),
    changed: () => show.update(),
    close: () => process.exit(0)
  };
  const show = new Show(app, pen);
  app.page = new PlayerPage(app, film);
  listen(
    (key) => app.page.handleKey(key),
    () => app.page.resume()
  );
  show.update();
}

Promise.resolve(process.argv.slice(2))
  .then(filmIn)
  .then((film) =>
    loadFonts(fonts).then((loaded) =>
      run(film, new Pen(quiravent.graphicServices.getTargetCanvas(), loaded))
    )
  )
  .catch((error) => {
    console.error(error.constructor === Error ? `player: ${error.message}` : error);
    process.exitCode = 1;
  });
