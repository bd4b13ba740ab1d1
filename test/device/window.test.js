'use strict';

// The sample application in a window of a virtual X display, driven by real key events of X, beside
// the same application without a window, driven by the control channel.

const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const { drawArtwork } = require('../../tools/artwork/draw');
const { Launcher, inSequence, launch } = require('../cli/support/launcher');
const { startDisplay, systemVariables } = require('./support/display');
const { newFolder, root } = require('./support/files');

const application = ['examples/home', '--still', '--time', '2025-11-21T20:47'];

/** The keys of a keyboard, as X names them, and what each stands for on the remote control. */
const KEYS = [
  ['Right', 'ArrowRight'],
  ['Down', 'ArrowDown'],
  ['Right', 'ArrowRight'],
  ['Return', 'Enter'],
  ['BackSpace', 'GoBack'],
  ['F4', 'ColorF3Blue']
];

/** Resolves with the picture after the keys, without a window. */
function pictureWithoutWindow(folder) {
  const file = path.join(folder, 'headless.png');
  const names = KEYS.map((key) => key[1]).join();
  const keys = `idle:700,${names},idle:300,capture:${file},quit`;
  const store = path.join(folder, 'headless-store');
  const options = ['--headless', '--storage', store, '--keys', keys];
  return launch(['run'].concat(options, application), {}, root).then((run) => {
    if (run.code !== 0) throw new Error(run.stderr);
    return fs.readFileSync(file);
  });
}

/** Waits until the window shows nothing new, or presses keys through X, or keeps the picture. */
class WindowedApplication {
  constructor(folder, display) {
    this.control = path.join(folder, 'control');
    this.variables = { DISPLAY: display };
    const store = path.join(folder, 'window-store');
    const options = ['--window', '--control', this.control, '--storage', store];
    this.launcher = new Launcher(['run'].concat(options, application), this.variables, root);
  }

  ask(words) {
    return launch(words.concat('--control', this.control), {}, root);
  }

  /** Until the device is there and the application has drawn its home screen. */
  settle() {
    return this.ask(['press', 'idle:700']).then(({ code }) => code === 0 || this.settle());
  }

  xdotool(words) {
    const env = systemVariables(this.variables);
    const run = spawnSync('xdotool', words, { env, encoding: 'utf8', timeout: 20000 });
    if (run.status !== 0) throw new Error(`xdotool ${words.join(' ')}: ${run.stderr}`);
    return run.stdout.trim();
  }

  press(key) {
    this.xdotool(['key', key]);
    return this.ask(['press', 'idle:300']);
  }

  /** Resolves with the picture of the screen. */
  look(name) {
    const file = path.join(path.dirname(this.control), name);
    return this.ask(['screenshot', file]).then(() => fs.readFileSync(file));
  }
}

test('keys of a window drive an application, which shows what it shows without one', (t) => {
  drawArtwork(path.join(root, 'build', 'artwork'));
  const folder = newFolder(t);
  return startDisplay().then((server) => {
    t.teardown(server.stop);
    const windowed = new WindowedApplication(folder, server.display);
    return windowed
      .settle()
      .then(() => {
        const id = windowed.xdotool(['search', '--sync', '--onlyvisible', '--name', 'Quiravent']);
        windowed.xdotool(['windowfocus', '--sync', id.split('\n')[0]]);
        return windowed.look('before.png');
      })
      .then((before) =>
        inSequence(KEYS, (key) => windowed.press(key[0]))
          .then(() => windowed.look('after.png'))
          .then((after) => {
            t.notOk(after.equals(before), 'the keys changed the screen');
            return pictureWithoutWindow(folder).then((same) =>
              t.ok(after.equals(same), 'the same picture')
            );
          })
      )
      .then(() => windowed.ask(['press', 'quit']))
      .then(() => windowed.launcher.ended);
  });
});
