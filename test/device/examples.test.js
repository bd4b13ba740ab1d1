'use strict';

// Runs each example as a user would, on the desktop device without a window.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const { drawArtwork } = require('../../tools/artwork/draw');
const { makeMedia } = require('../../tools/media/make');
const { readPicture } = require('./support/png');

const root = path.join(__dirname, '..', '..');
const time = ['--time', '2025-11-21T20:47'];

/** A new folder for what an example stores and for the picture of its screen. */
function makeFolder(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-examples-'));
  t.teardown(() => spawnSync('rm', ['-rf', folder]));
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
  // Colours that large areas, text or a picture have, and at least how many pixels of each.
  const cases = [
    { name: 'hello', words: ['0'], colors: { '#ffb454': 20000, '#ffffff': 4000, '#4fd1c5': 5000 } },
    { name: 'store', words: ['Zoë', '0'], colors: { '#4fd1c5': 5700, '#ffffff': 2000 } },
    { name: 'pictures', words: ['0'], colors: { '#4485dd': 2000, '#ffffff': 5000 }, hues: 5000 },
    {
      name: 'home',
      words: ['--demo', '--still'].concat(time),
      colors: { '#7ab4ff': 2000 },
      hues: 20000
    }
  ];
  cases.forEach((example) => {
    const run = runExample(t, makeFolder(t), example.name, example.words);
    t.equal(run.stderr, '', 'nothing is complained about');
    Object.keys(example.colors).forEach((color) => {
      const count = run.screen.colors.get(color) || 0;
      t.ok(count >= example.colors[color], `${color} is there: ${count} pixels`);
    });
    const hues = run.screen.colors.size;
    t.ok(hues >= (example.hues || 100), `${hues} colours are there`);
  });
  t.end();
});

test('the examples of players tell what happens', (t) => {
  const film = path.join(root, 'build', 'media', 'film.mp4');
  // Of each: how it is called, the lines that it has to say in their order.
  const cases = [
    [
      ['play-video', film, '47000'],
      ['fetch_ready 0', 'playback_ready 0', 'playback_completed 0', 'the player is gone']
    ],
    [
      ['play-ad'],
      ['fetch_ready 0', 'playback_ready 0', 'a part', 'playback_completed 0', 'on with the film']
    ],
    [
      ['play-video', '/nowhere.mp4'],
      ['fetch_error 2', 'playback_error 2', 'the player is gone']
    ]
  ];
  cases.forEach((each) => {
    const run = runExample(t, makeFolder(t), each[0][0], each[0].slice(1));
    // Which parts of an advertisement are told depends on how busy the machine is.
    const said = run.stdout.replace(/^[1-9]\d? %$/gm, 'a part');
    const expected = said.split('\n').filter((line) => each[1].indexOf(line) >= 0);
    const unique = expected.filter((line, index) => expected.indexOf(line) === index);
    t.deepEqual(unique, each[1], each[0].join(' '));
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
  t.deepEqual(
    [run.status, run.stderr.replace(/^.*nowhere.*\n/gm, '')],
    [0, ''],
    'no key is too much'
  );
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
  const stored = storedValues(folder, 'examples/store');
  t.equal(stored.name, 'Zoë', 'the name is kept');
  t.equal(stored.starts, '2', 'both starts are counted');
  t.end();
});

test('the home screen begins where it was left', (t) => {
  const folder = makeFolder(t);
  const words = ['--demo', '--still'].concat(time);
  const kept = () => {
    const { accent, clock, focus, list, starts } = storedValues(folder, 'examples/home');
    return { accent, clock, focus, list, starts };
  };
  runExample(t, folder, 'home', words);
  t.deepEqual(kept(), {
    accent: 'Sky',
    clock: '12 hours',
    focus: 'das-gewaechshaus',
    list: 'alem-do-sertao',
    starts: '1'
  });
  // The same keys again, from the poster and the settings of the first run on.
  const second = runExample(t, folder, 'home', words);
  t.ok(second.screen.colors.get('#b6e06a') >= 2000, 'the second next accent colour is drawn');
  t.deepEqual(kept(), {
    accent: 'Lime',
    clock: '24 hours',
    focus: 'alem-do-sertao',
    list: 'alem-do-sertao der-baer-und-das-boot',
    starts: '2'
  });
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
