'use strict';

// npm start: set-up, build, then the sample application on the desktop device. It presses the keys
// of a short demonstration by itself, and the pictures of its screen are kept.

const fs = require('fs');
const path = require('path');
const { drawArtwork } = require('./artwork/draw');
const { build } = require('./lib/build');
const { main, mustRun, root } = require('./lib/run');
const { setup } = require('./lib/setup');

const pictures = path.join(root, 'build', 'pictures');

/** What the pictures of the demonstration show, by their number. */
const SHOWN = [
  ['06', 'loading'],
  ['12', 'the home screen'],
  ['18', 'the focus in the second row'],
  ['20', 'the details of a film'],
  ['27', 'the settings'],
  ['28', 'the home screen with other settings']
];

main(() => {
  setup(['build']);
  build('release', ['applications']);
  drawArtwork(path.join(root, 'build', 'artwork'));
  fs.mkdirSync(pictures, { recursive: true });
  const env = Object.assign({}, process.env, {
    LD_LIBRARY_PATH: path.join(root, 'build', 'release'),
    QUIRAVENT_SCREENSHOT: path.join(pictures, 'home-%02d.png'),
    QUIRAVENT_STORAGE: path.join(root, 'build', 'storage')
  });
  mustRun(process.execPath, ['examples/home', '--demo', '--still'], { env });
  console.log('\nThe pictures of the screen:');
  SHOWN.forEach((row) => {
    console.log(`  ${path.join(pictures, `home-${row[0]}.png`)}  ${row[1]}`);
  });
  console.log('\nThe settings that it changed are kept in build/storage for the next start.');
});
