'use strict';

// node tools/samples/with-display.js PROGRAM [WORD...]: runs a program that finds a display.

const { spawn } = require('child_process');
const { startDisplay } = require('../../test/device/support/display');

const words = process.argv.slice(2);

startDisplay().then((server) => {
  const env = Object.assign({}, process.env, { DISPLAY: server.display, SDL_VIDEODRIVER: 'x11' });
  spawn(words[0], words.slice(1), { env, stdio: 'inherit' }).on('close', (code) => {
    server.stop();
    process.exitCode = code === null ? 1 : code;
  });
});
