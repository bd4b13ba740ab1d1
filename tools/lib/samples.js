'use strict';

// The examples on the desktop device under one script runtime: every picture that a viewer sees of
// them, and what the device's libraries take from the runtime.

const crypto = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { drawArtwork } = require('../artwork/draw');
const { logVariables, takenFrom } = require('./bindings');
const { build } = require('./build');
const { Failure, SUITE_PATIENCE_MS, attempt, mustRun, root, run } = require('./run');

const desktop = path.join(root, 'build', 'release');
const device = path.join(desktop, 'libquiravent_desktop.so');
const artwork = path.join(root, 'build', 'artwork');

/** Each with its words; those of one name in turn share a store. */
const EXAMPLES = [
  ['hello', '0'],
  ['pictures', '0'],
  ['store', 'Zoë', '0'],
  ['store', '', '0'],
  ['home', '--demo', '--still'],
  ['home', '--demo', '--still']
];

/** Builds and draws what examples need, whatever the runtime. */
function prepareSamples() {
  build('release', ['applications']);
  drawArtwork(artwork);
}

/**
 * Gives a new folder to a function and then removes it; answers what that does. In the folder the
 * examples find this package by its name, as runtimes before 12 need it.
 */
function inFolder(use) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-samples-'));
  try {
    fs.mkdirSync(path.join(folder, 'node_modules'));
    fs.symlinkSync(root, path.join(folder, 'node_modules', 'quiravent'));
    return use(folder);
  } finally {
    mustRun('rm', ['-rf', folder]);
  }
}

/** Not an example, but run as one. */
const LATE_LIBRARIES = path.join(root, 'tools', 'samples', 'late-libraries.js');

/**
 * Runs an example, or a file by its full path, with the module that a folder holds; answers as run
 * does. prefix: words before the runtime's program.
 */
function runExample(runtime, folder, words, variables, prefix) {
  const env = Object.assign({}, process.env, {
    LD_LIBRARY_PATH: desktop,
    NODE_PATH: path.join(folder, 'node_modules'),
    QUIRAVENT_BUILD: runtime.build,
    QUIRAVENT_DISPLAY: 'headless',
    QUIRAVENT_STORAGE: path.join(folder, 'store'),
    TZ: 'UTC'
  });
  const command = (prefix || []).concat(
    [runtime.program, '-r', path.join(root, 'tools', 'samples', 'frozen-date.js')],
    [path.resolve(root, 'examples', words[0])],
    words.slice(1)
  );
  return run(command[0], command.slice(1), {
    capture: true,
    env: Object.assign(env, variables),
    timeout: SUITE_PATIENCE_MS
  });
}

/** The digests of all pictures of a run, in their order; a Failure where it complained. */
function picturesOf(runtime, folder, words, more) {
  const pictures = path.join(folder, 'pictures');
  mustRun('rm', ['-rf', pictures]);
  fs.mkdirSync(pictures);
  const variables = Object.assign({ QUIRAVENT_SCREENSHOT: path.join(pictures, '%06d.png') }, more);
  const result = runExample(runtime, folder, words, variables);
  if (result.status !== 0 || result.stderr !== '') {
    throw new Failure(`${words[0]} ended with ${result.status}: ${result.stderr}`);
  }
  return fs
    .readdirSync(pictures)
    .sort()
    .map((name) => fs.readFileSync(path.join(pictures, name)))
    .map((bytes) => crypto.createHash('sha256').update(bytes).digest('hex'));
}

/** The pictures of every example in turn. */
function allPictures(runtime) {
  return inFolder((folder) => EXAMPLES.map((words) => picturesOf(runtime, folder, words)));
}

/**
 * The pictures of the first example where the system's zlib is there before the device, as an add-on
 * of an application may bring it: bound to the copy of itself that the runtime exports.
 */
function picturesBesideZlib(runtime) {
  const variables = { LD_PRELOAD: 'libz.so.1' };
  return inFolder((folder) => picturesOf(runtime, folder, EXAMPLES[0], variables));
}

/** What two runs differ in, as a text; '' if in nothing. */
function differenceOf(pictures, expected) {
  if (expected.length === 0) return 'the reference shows no picture';
  if (pictures.length !== expected.length) {
    return `${pictures.length} pictures instead of ${expected.length}`;
  }
  const first = pictures.findIndex((picture, index) => picture !== expected[index]);
  return first < 0 ? '' : `picture ${first} differs`;
}

/** The words before a program and the variables that give it a window. */
const WINDOW = {
  prefix: [process.execPath, path.join(root, 'tools', 'samples', 'with-display.js')],
  variables: { QUIRAVENT_DISPLAY: 'window' }
};
const HEADLESS = { prefix: [], variables: {} };

/** What the libraries of a device, given by its porting layer, take of the runtime's own. */
function takenBy(layer, runtime, screen, words) {
  return inFolder((folder) => {
    fs.symlinkSync(layer, path.join(folder, 'libquiravent_porting_layer.so'));
    fs.symlinkSync(device, path.join(folder, 'libquiravent_desktop.so'));
    const log = path.join(folder, 'bindings');
    const variables = Object.assign(
      { LD_LIBRARY_PATH: folder },
      screen.variables,
      logVariables(log)
    );
    const result = runExample(runtime, folder, words, variables, screen.prefix);
    if (result.status !== 0) throw new Failure(`ended with ${result.status}: ${result.stderr}`);
    return takenFrom(runtime.program, log);
  });
}

/** The device as it is opened takes nothing; if it were linked plainly it would. */
function bindingFault(runtime) {
  const layer = path.join(desktop, 'libquiravent_porting_layer.so');
  const hello = ['hello', '0'];
  const taken = [].concat(
    takenBy(layer, runtime, HEADLESS, hello),
    takenBy(layer, runtime, WINDOW, hello),
    takenBy(layer, runtime, HEADLESS, [LATE_LIBRARIES])
  );
  const plainly = takenBy(device, runtime, HEADLESS, hello);
  console.log(
    `# ${runtime.name}: the device takes ${taken.length} symbols from the runtime; opened plainly it ` +
      `would take ${plainly.length}`
  );
  if (plainly.length === 0) return 'not even a device that is opened plainly is seen to take any';
  return taken.map((one) => `${one.library} takes ${one.symbol}`).join('\n');
}

/** Counts one check; tells its fault. */
function count(total, name, check) {
  const fault = attempt(check, (message) => message);
  if (fault) console.log(`not ok ${name}: ${fault}`);
  if (fault) total.failed += 1;
  else total.passed += 1;
}

/** What the reference showed, by its name: it is run once, whatever is compared with it. */
const shownBy = {};

/** Runs the examples under a runtime beside a reference: { passed, failed }. */
function testSamples(runtime, reference) {
  const total = { passed: 0, failed: 0 };
  const expected = shownBy[reference.name] || allPictures(reference);
  shownBy[reference.name] = expected;
  const shown = allPictures(runtime);
  EXAMPLES.forEach((words, index) =>
    count(total, words.join(' '), () => differenceOf(shown[index], expected[index]))
  );
  count(total, 'beside a zlib that was there before', () =>
    differenceOf(picturesBesideZlib(runtime), expected[0])
  );
  count(total, 'what the device takes from the runtime', () => bindingFault(runtime));
  return total;
}

module.exports = { prepareSamples, testSamples };
