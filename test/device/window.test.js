'use strict';

// The sample application in a window of a virtual X display, driven by real key events of X, beside
// the same application without a window, driven by the control channel.

const fs = require('fs');
const path = require('path');
const { spawn, spawnSync } = require('child_process');
const test = require('tape');
const { drawArtwork } = require('../../tools/artwork/draw');
const { startDisplay } = require('./support/display');
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

function launcher(words, variables) {
  const env = Object.assign({}, process.env, variables);
  return spawnSync(process.execPath, ['cli/quiravent.js'].concat(words), {
    cwd: root,
    env,
    encoding: 'utf8',
    timeout: 60000
  });
}

/** The picture after the keys, without a window. */
function pictureWithoutWindow(folder) {
  const file = path.join(folder, 'headless.png');
  const names = KEYS.map((key) => key[1]).join();
  const keys = `idle:700,${names},idle:300,capture:${file},quit`;
  const store = path.join(folder, 'headless-store');
  const options = ['--headless', '--storage', store, '--keys', keys];
  const run = launcher(['run'].concat(options, application), {});
  if (run.status !== 0) throw new Error(run.stderr);
  return fs.readFileSync(file);
}

/** Waits until the window shows nothing new, or presses keys through X, or keeps the picture. */
class WindowedApplication {
  constructor(folder, display) {
    this.control = path.join(folder, 'control');
    this.variables = { DISPLAY: display };
    const options = ['--window', '--control', this.control];
    const store = ['--storage', path.join(folder, 'window-store')];
    const words = ['cli/quiravent.js', 'run'].concat(options, store, application);
    const env = Object.assign({}, process.env, this.variables);
    this.child = spawn(process.execPath, words, { cwd: root, env, stdio: 'inherit' });
    this.end = new Promise((resolve) => this.child.on('close', resolve));
  }

  ask(words) {
    return launcher(words.concat('--control', this.control), {});
  }

  /** Until the device is there and the application has drawn its home screen. */
  settle() {
    while (this.ask(['press', 'idle:700']).status !== 0);
  }

  xdotool(words) {
    const env = Object.assign({}, process.env, this.variables);
    const run = spawnSync('xdotool', words, { env, encoding: 'utf8', timeout: 20000 });
    if (run.status !== 0) throw new Error(`xdotool ${words.join(' ')}: ${run.stderr}`);
    return run.stdout.trim();
  }

  press(key) {
    this.xdotool(['key', key]);
    this.ask(['press', 'idle:300']);
  }
}

test('keys of a window drive an application, which shows what it shows without one', (t) => {
  drawArtwork(path.join(root, 'build', 'artwork'));
  const folder = newFolder(t);
  return startDisplay().then((server) => {
    t.teardown(server.stop);
    const windowed = new WindowedApplication(folder, server.display);
    windowed.settle();
    const id = windowed.xdotool(['search', '--sync', '--onlyvisible', '--name', 'Quiravent']);
    windowed.xdotool(['windowfocus', '--sync', id.split('\n')[0]]);
    const before = path.join(folder, 'before.png');
    windowed.ask(['screenshot', before]);
    KEYS.forEach((key) => windowed.press(key[0]));
    const after = path.join(folder, 'after.png');
    windowed.ask(['screenshot', after]);
    windowed.ask(['press', 'quit']);
    return windowed.end.then(() => {
      const shown = fs.readFileSync(after);
      t.notOk(shown.equals(fs.readFileSync(before)), 'the keys changed the screen');
      t.ok(shown.equals(pictureWithoutWindow(folder)), 'the same picture');
    });
  });
});
