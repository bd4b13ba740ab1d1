'use strict';

// A television's home screen: rows of posters, details, settings that are kept. Starts everything;
// app.js is where the application itself begins.

const quiravent = require('quiravent');
const { App } = require('./app');
const { loadFonts, loadPictures } = require('./assets');
const catalogue = require('./catalogue');
const { untilNextMinute } = require('./clock');
const { playDemo } = require('./demo');
const { readOptions, usage } = require('./options');
const { drawLoading } = require('./pages/loading');
const { Pen } = require('./pen');
const { listen } = require('./remote');
const { Settings } = require('./settings');
const { Show } = require('./show');
const { fonts } = require('./theme');
const { makeBackdrop, makeTile } = require('./tiles');

function openScreen() {
  const canvas = quiravent.graphicServices.getTargetCanvas();
  if (!canvas) throw new Error('this device has no screen');
  return canvas;
}

function tellMissing(folder, missing, total) {
  console.error(
    `home: ${missing} of ${total} pictures could not be loaded from ${folder}, and titles are ` +
      'shown instead. "node tools/draw-artwork.js" draws them.'
  );
}

/** Loads all pictures while the screen shows how far that is; a promise of the tiles and backdrop. */
function loadArtwork(folder, pen, settings) {
  const items = catalogue.items();
  const names = items.map((item) => item.picture).concat([catalogue.background]);
  const tiles = new Map();
  let backdrop;
  let done = 0;
  let shown = -1;
  // In tenths: to draw the bar for each picture would take longer than to load them.
  const show = () => {
    const tenths = Math.floor((10 * done) / names.length);
    if (tenths === shown) return;
    shown = tenths;
    drawLoading(pen, settings.accent, done, names.length);
    pen.canvas.flush();
  };
  show();
  return loadPictures(folder, names, (name, picture) => {
    const item = items.find((each) => each.picture === name);
    if (item) tiles.set(item.id, makeTile(item, picture, pen.fonts));
    else backdrop = makeBackdrop(picture);
    // Gives the memory back at once rather than at some later collection.
    if (picture) picture.release();
    done++;
    show();
  }).then((missing) => {
    if (missing > 0) tellMissing(folder, missing, names.length);
    return { backdrop, tiles };
  });
}

/** Shows the time as it goes on. */
function keepTime(app, show) {
  setTimeout(() => {
    show.update();
    keepTime(app, show);
  }, untilNextMinute(app.now()));
}

function run(app, pen, options) {
  const show = new Show(app, pen);
  app.changed = () => show.update();
  if (options.demo) {
    playDemo(app, show, options.still ? 0 : 700, () => console.log('demo: end'));
    return;
  }
  listen(
    (key) => {
      app.handleKey(key);
      show.update();
    },
    () => app.resume()
  );
  keepTime(app, show);
  show.update();
}

function start(options) {
  const canvas = openScreen();
  const settings = new Settings(quiravent.dataServices.getPersistent('examples/home'));
  settings.countStart(options.now());
  return loadFonts(fonts).then((loaded) => {
    const pen = new Pen(canvas, loaded);
    return loadArtwork(options.artwork, pen, settings).then((artwork) => {
      const parts = { settings, now: options.now, isStill: options.still };
      run(new App(Object.assign(parts, artwork)), pen, options);
    });
  });
}

function main(words) {
  const options = readOptions(words);
  return options.help ? console.log(usage) : start(options);
}

Promise.resolve(process.argv.slice(2))
  .then(main)
  .catch((error) => {
    // What is plainly an Error has a message for the user; anything else is a fault in the program.
    console.error(error.constructor === Error ? `home: ${error.message}` : error);
    process.exitCode = 1;
  });
