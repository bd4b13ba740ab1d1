'use strict';

// npm start: set-up, build, then the sample application on the desktop device. With a display it is
// there to be used with the keyboard; without one the launcher presses some keys, and the screen is
// kept after each step.

const fs = require('fs');
const path = require('path');
const { drawArtwork } = require('./artwork/draw');
const { build } = require('./lib/build');
const { Failure, main, root, run } = require('./lib/run');
const { setup } = require('./lib/setup');

const pictures = path.join(root, 'build', 'pictures');

/** The steps without a display: the keys, the picture after them, and what it shows. */
const STEPS = [
  ['idle:700', 'home.png', 'the home screen'],
  ['ArrowRight*3', 'row.png', 'the focus further on in the row'],
  ['ArrowDown,ArrowRight*2', 'second-row.png', 'the focus in the second row'],
  ['Enter', 'details.png', 'the details of a film'],
  ['Enter,GoBack,ArrowDown,ColorF3Blue', 'settings.png', 'the settings'],
  ['ArrowRight*2,ArrowDown,ArrowRight', 'changed.png', 'the settings, changed'],
  ['GoBack', 'end.png', 'the home screen with the other settings']
];

const hasDisplay = Boolean(process.env.DISPLAY || process.env.WAYLAND_DISPLAY);

function launch(options, parameters) {
  const storage = ['--storage', path.join(root, 'build', 'storage')];
  const words = ['cli/quiravent.js', 'run'].concat(options, storage, 'examples/home', parameters);
  const status = run(process.execPath, words).status;
  if (status !== 0) throw new Failure(`the sample application ended with status ${status}.`);
}

function startInWindow() {
  console.log('Arrow keys move, Return opens, Backspace goes back, F4 opens the settings.');
  launch(['--window'], []);
}

function startWithoutDisplay() {
  fs.mkdirSync(pictures, { recursive: true });
  const fileOf = (step) => path.join(pictures, step[1]);
  const keys = STEPS.map((step) => `${step[0]},capture:${fileOf(step)}`).concat('quit');
  launch(['--headless', '--keys', keys.join()], ['--still']);
  console.log('\nThe pictures of the screen:');
  STEPS.forEach((step) => console.log(`  ${fileOf(step)}  ${step[2]}`));
  console.log('\nThe settings that were changed are kept in build/storage for the next start.');
}

main(() => {
  setup(['build']);
  build('release', ['applications']);
  drawArtwork(path.join(root, 'build', 'artwork'));
  if (hasDisplay) startInWindow();
  else startWithoutDisplay();
});
