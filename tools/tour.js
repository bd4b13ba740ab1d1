'use strict';

// node tools/tour.js: shows the sample application without a display. The launcher runs it, keys are
// pressed over its control channel, and the screen is kept after each step in build/pictures. What a
// film shows is compared with what is due at that time.

const { spawn } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { ControlChannel } = require('../cli/lib/control-channel');
const { readSteps } = require('../cli/lib/key-steps');
const { playKeys, waitForFirstFrame } = require('../cli/lib/play-keys');
const { captureFilm, describe, isRight } = require('./lib/film-picture');
const { root } = require('./lib/run');
const { showTelevision } = require('./lib/television-tour');

const pictures = path.join(root, 'build', 'pictures');

/** Status of an application that the device asked to end, by a signal. */
const ASKED_TO_END = 128 + os.constants.signals.SIGTERM;

/** For how long a picture of a film is waited for; in ms. */
const patience = 60000;

/** The keys, the picture after them, and what it shows. */
const HOME = [
  ['idle:700', 'home.png', 'the home screen'],
  ['ArrowRight*3', 'row.png', 'the focus further on in the row'],
  ['ArrowDown ArrowRight*2', 'second-row.png', 'the focus in the second row'],
  ['Enter', 'details.png', 'the details of a film'],
  ['ArrowRight Enter GoBack ArrowDown ColorF3Blue', 'settings.png', 'the settings'],
  ['ArrowRight*2 ArrowDown ArrowRight', 'changed.png', 'the settings, changed'],
  ['GoBack', 'end.png', 'the home screen with the other settings']
];

/** The same for the film, with the player (1: film, 2: advertisement) and the position waited for. */
const FILM = [
  ['Enter Enter', 1, 3000, 'film-at-3s.png', 'a film, under its transport bar'],
  ['', 1, 5000, 'film-at-5s.png', 'the same two seconds later'],
  ['ArrowUp ArrowRight ArrowDown Enter', 1, 0, 'languages.png', 'the languages'],
  ['GoBack', 1, 10500, 'subtitles.png', 'subtitles'],
  ['ArrowRight*2', 2, 2000, 'advertisement.png', 'an advertisement, in the film’s middle'],
  ['', 1, 0, 'film-goes-on.png', 'the film, going on after it']
];

function tell(file, text) {
  console.log(`  ${file}  ${text}`);
}

const press = (client, words) =>
  playKeys(client, readSteps(words.split(' ').filter((word) => word)), () => {});

function showHome(client, step) {
  const file = path.join(pictures, step[1]);
  return press(client, step[0])
    .then(() => client.request('capture', { file }))
    .then(() => tell(file, step[2]));
}

function showFilm(client, step) {
  const [words, player, position, name, text] = step;
  const file = path.join(pictures, name);
  const goal = { player, position, state: 'playing', timeout: patience };
  return press(client, words)
    .then(() => client.request('waitPlayer', goal, patience))
    .then(() => press(client, 'Info'))
    .then(() => (player === 1 ? captureFilm(client, player, file) : capture(client, file)))
    .then((seen) => {
      tell(file, seen ? `${text}, ${describe(seen)}` : text);
      if (seen && !isRight(seen)) throw new Error(`the film shows a wrong picture: ${file}`);
    });
}

const capture = (client, file) => client.request('capture', { file }).then(() => undefined);

const keep = (client, name, text) => {
  const file = path.join(pictures, name);
  return capture(client, file).then(() => tell(file, text));
};

const inTurn = (steps, show, client) =>
  steps.reduce((before, step) => before.then(() => show(client, step)), Promise.resolve());

function launch(channel) {
  const options = ['--headless', '--control', channel.path];
  const storage = ['--storage', path.join(root, 'build', 'storage')];
  const words = ['cli/quiravent.js', 'run'].concat(options, storage, 'examples/home', '--still');
  return spawn(process.execPath, words, { cwd: root, stdio: 'inherit' });
}

function tour(client) {
  return waitForFirstFrame(client)
    .then(() => inTurn(HOME, showHome, client))
    .then(() => inTurn(FILM, showFilm, client))
    .then(() => showTelevision(client, press, (name, text) => keep(client, name, text)));
}

function main() {
  fs.mkdirSync(pictures, { recursive: true });
  const channel = new ControlChannel();
  const child = launch(channel);
  const ended = new Promise((resolve) => child.on('close', resolve)).then((status) =>
    channel.close().then(() => {
      if (status !== ASKED_TO_END)
        throw new Error(`the sample application ended with status ${status}`);
    })
  );
  const shown = channel
    .connectWhenUp()
    .then((client) => client && tour(client).then(() => client.request('quit')));
  // A tour that fails doesn't leave the application behind.
  const orEnded = shown.catch((error) => {
    child.kill();
    throw error;
  });
  return Promise.all([orEnded, ended]);
}

console.log('\nThe pictures of the screen:');
main().catch((error) => {
  console.error(`quiravent: ${error.message}`);
  process.exitCode = 1;
});
