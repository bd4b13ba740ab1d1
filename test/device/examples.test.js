'use strict';

// Runs each example as a user would, on the desktop device without a window.

const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const { drawArtwork } = require('../../tools/artwork/draw');
const { makeMedia } = require('../../tools/media/make');
const { row } = require('../script/support/rows');
const { newFolder, root } = require('./support/files');
const { readPicture } = require('./support/png');

const time = ['--time', '2025-11-21T20:47'];

/** A new folder for what an example stores and for the picture of its screen. */
function makeFolder(t) {
  const folder = newFolder(t);
  // A package's own name is known to it from version 12 of the runtime on.
  fs.mkdirSync(path.join(folder, 'node_modules'));
  fs.symlinkSync(root, path.join(folder, 'node_modules', 'quiravent'));
  return folder;
}

function runNode(folder, words) {
  const env = Object.assign({}, process.env, {
    NODE_PATH: path.join(folder, 'node_modules'),
    QUIRAVENT_DISPLAY: 'headless',
    QUIRAVENT_SCREENSHOT: path.join(folder, 'screen.png'),
    QUIRAVENT_STORAGE: path.join(folder, 'store')
  });
  return spawnSync(process.execPath, words, { cwd: root, env, encoding: 'utf8', timeout: 60000 });
}

/** What an example ended with, and the last picture on its screen. */
function runExample(t, folder, name, words) {
  const run = runNode(folder, [path.join('examples', name)].concat(words));
  t.equal(run.status, 0, `${name} ends well`);
  const screen = readPicture(path.join(folder, 'screen.png'));
  t.deepEqual([screen.width, screen.height], [1280, 720], 'the picture has the size of the screen');
  return Object.assign(run, { screen });
}

/** Everything that is kept under the name of a context. */
function storedValues(folder, context) {
  const script = `console.log(JSON.stringify(
    require('quiravent').dataServices.getPersistent('${context}').getAll()))`;
  return JSON.parse(runNode(folder, ['-e', script]).stdout);
}

test('the examples draw what they should', (t) => {
  drawArtwork(path.join(root, 'build', 'artwork'));
  makeMedia(path.join(root, 'build', 'media'));
  // Colours that large areas, text or a picture have, and at least how many pixels of each; and at
  // least how many colours there are.
  const home = ['--demo', '--still'].concat(time);
  const cases = [
    row('hello', ['0'], { '#ffb454': 20000, '#ffffff': 4000, '#4fd1c5': 5000 }, 100),
    row('store', ['Zoë', '0'], { '#4fd1c5': 5700, '#ffffff': 2000 }, 100),
    row('pictures', ['0'], { '#4485dd': 2000, '#ffffff': 5000 }, 5000),
    row('home', home, { '#7ab4ff': 2000 }, 20000)
  ];
  cases.forEach(([name, words, colors, hues]) => {
    const run = runExample(t, makeFolder(t), name, words);
    t.equal(run.stderr, '', 'nothing is complained about');
    Object.keys(colors).forEach((color) => {
      const count = run.screen.colors.get(color) || 0;
      t.ok(count >= colors[color], `${color} is there: ${count} pixels`);
    });
    t.ok(run.screen.colors.size >= hues, `${run.screen.colors.size} colours are there`);
  });
  t.end();
});

test('the examples of players tell what happens', (t) => {
  const film = path.join(root, 'build', 'media', 'film.mp4');
  // Of each: how it is called, the lines that it has to say in their order.
  const cases = [
    row(
      ['play-video', film, '47000'],
      'fetch_ready 0, playback_ready 0, playback_completed 0, the player is gone'
    ),
    row(
      ['play-ad'],
      'fetch_ready 0, playback_ready 0, a part, playback_completed 0, on with the film'
    ),
    row(['play-video', '/nowhere.mp4'], 'fetch_error 2, playback_error 2, the player is gone')
  ];
  cases.forEach(([words, lines]) => {
    const run = runExample(t, makeFolder(t), words[0], words.slice(1));
    // Which parts of an advertisement are told depends on how busy the machine is.
    const said = run.stdout.replace(/^[1-9]\d? %$/gm, 'a part').split('\n');
    const unique = said.filter((line, index) => said.indexOf(line) === index);
    const wanted = lines.split(', ');
    t.equal(unique.filter((line) => wanted.indexOf(line) >= 0).join(', '), lines, words.join(' '));
  });
  t.end();
});

test('a film that isn’t there yet can be told anything', (t) => {
  const script = `const { PlayerPage } = require('./examples/player/page');
    const app = { settings: { accent: '#ffffff' }, close() {}, changed() {} };
    const keys = 'up down enter back subtitle enter right enter left forward rewind play pause mute';
    const page = new PlayerPage(app, { url: '/nowhere.mp4', breaks: [] });
    keys.split(' ').forEach((key) => page.handleKey(key));
    page.leave();`;
  const run = runNode(makeFolder(t), ['-e', script]);
  t.deepEqual([run.status, run.stderr.replace(/^.*nowhere.*\n/gm, '')], [0, '']);
  t.end();
});

test('the application guide shows an example that runs', (t) => {
  const guide = fs.readFileSync(path.join(root, 'docs', 'application-guide.md'), 'utf8');
  const example = fs.readFileSync(path.join(root, 'examples', 'play-video', 'index.js'), 'utf8');
  t.ok(guide.indexOf(`\`\`\`js\n${example}\`\`\``) >= 0, 'play-video is in it, word by word');
  t.end();
});

test('values that were set are there in the next run', (t) => {
  const folder = makeFolder(t);
  runExample(t, folder, 'store', ['Zoë', '0']);
  const second = runExample(t, folder, 'store', ['', '0']);
  t.ok(second.stdout.startsWith('start number 2,'), 'the second start is the second');
  const { name, starts } = storedValues(folder, 'examples/store');
  t.deepEqual([name, starts], ['Zoë', '2'], 'name and starts are kept');
  t.end();
});

test('the home screen begins where it was left', (t) => {
  const folder = makeFolder(t);
  const words = ['--demo', '--still'].concat(time);
  const kept = () => {
    const { accent, clock, focus, list, starts } = storedValues(folder, 'examples/home');
    return [accent, clock, focus, list, starts].join(', ');
  };
  runExample(t, folder, 'home', words);
  t.equal(kept(), 'Sky, 12 hours, das-gewaechshaus, alem-do-sertao, 1');
  // The same keys again, from the poster and the settings of the first run on.
  const second = runExample(t, folder, 'home', words);
  t.ok(second.screen.colors.get('#b6e06a') >= 2000, 'the second next accent colour is drawn');
  const list = 'alem-do-sertao der-baer-und-das-boot';
  t.equal(kept(), `Lime, 24 hours, alem-do-sertao, ${list}, 2`);
  t.end();
});

test('the home screen shows titles where pictures are missing', (t) => {
  const words = ['--demo', '--still', '--artwork', '/nonexistent'].concat(time);
  const run = runExample(t, makeFolder(t), 'home', words);
  t.ok(run.stderr.indexOf('home: 29 of 29 pictures could not be loaded') >= 0, 'it says so');
  t.ok(run.screen.colors.get('#274060') > 10000, 'the tiles are there');
  t.ok(run.screen.colors.get('#f5f7fa') > 500, 'the titles are there');
  t.end();
});

test('the home screen refuses options that mean nothing', (t) => {
  const folder = makeFolder(t);
  [['--tame'], ['--time', 'noon'], ['--time'], ['--artwork']].forEach((words) => {
    const run = runNode(folder, ['examples/home'].concat(words));
    const text = words.join(' ');
    t.equal(run.status, 1, `${text}: an error`);
    t.ok(run.stderr.startsWith('home: ') && run.stderr.indexOf(words[words.length - 1]) > 0, text);
  });
  t.end();
});
