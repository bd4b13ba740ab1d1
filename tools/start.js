'use strict';

// npm start: set-up, build, then the sample application on the desktop device. With a display it is
// there to be used with the keyboard; without one it is shown by tour.js.

const path = require('path');
const { drawArtwork } = require('./artwork/draw');
const { build } = require('./lib/build');
const { Failure, main, root, run } = require('./lib/run');
const { setup } = require('./lib/setup');
const { makeMedia } = require('./media/make');
const { makeMultiplex } = require('../examples/television/multiplex');

const hasDisplay = Boolean(process.env.DISPLAY || process.env.WAYLAND_DISPLAY);

function runNode(words) {
  const status = run(process.execPath, words).status;
  if (status !== 0) throw new Failure(`the sample application ended with status ${status}.`);
}

function startInWindow() {
  console.log('Arrow keys move, Return opens, Backspace goes back, F4 opens the settings.');
  console.log('In a film: Space pauses, . and , go fast, up opens the languages, S leaves.');
  console.log('G opens the television: digits and page keys change the channel, U shows captions.');
  const storage = ['--storage', path.join(root, 'build', 'storage')];
  runNode(['cli/quiravent.js', 'run', '--window'].concat(storage, 'examples/home'));
}

function startWithoutDisplay() {
  runNode(['tools/tour.js']);
  console.log('\nThe settings that were changed are kept in build/storage for the next start.');
}

main(() => {
  setup(['build']);
  build('release', ['applications']);
  drawArtwork(path.join(root, 'build', 'artwork'));
  makeMedia(path.join(root, 'build', 'media'));
  makeMultiplex();
  if (hasDisplay) startInWindow();
  else startWithoutDisplay();
});
