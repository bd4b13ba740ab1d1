'use strict';

// The sample player, driven as by a viewer, over its control channel.

const { execFileSync } = require('child_process');
const fs = require('fs');
const path = require('path');
const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const { captureFilm, describe, isRight } = require('../../tools/lib/film-picture');
const { counter, numberAt, readCounter } = require('../../tools/media/frame-counter');
const { drawArtwork } = require('../../tools/artwork/draw');
const { makeMedia } = require('../../tools/media/make');
const { picture } = require('../../tools/media/scenes');
const { Application } = require('./support/controlled');
const { root } = require('./support/files');
const { readPicture } = require('./support/png');

const film = 1;
const advertisement = 2;

/** For how long something is waited for, on a busy machine; in ms. */
const timeout = 30000;

class Viewer extends Application {
  constructor(t, example, variables) {
    const settings = { NODE_PATH: path.join(root, 'cli', 'modules'), UV_THREADPOOL_SIZE: '8' };
    const source = `require(${JSON.stringify(path.join(root, 'examples', example))});`;
    super(t, source, Object.assign(settings, variables));
  }

  press(keys) {
    return inSequence(keys.split(' '), (key) => this.request('press', { key }));
  }

  waitFor(player, state, position) {
    const goal = { player, state, position: position || 0, timeout };
    return this.request('waitPlayer', goal).then((answer) => answer.player);
  }

  /** Resolves with the film's report once a condition holds for it; keys wake a sleeping worker. */
  untilFilm(condition) {
    return this.request('players').then((answer) => {
      const found = answer.players.filter((each) => each.player === film)[0];
      return condition(found) ? found : this.press('Info').then(() => this.untilFilm(condition));
    });
  }

  /** Presses a key on which the player ends; resolves with how it did. */
  leave(key) {
    // There may be nobody left to answer.
    this.ask('keyDown', { key });
    return this.end;
  }

  see(name) {
    return captureFilm(this, film, this.file(name));
  }
}

function start(t, variables) {
  makeMedia(path.join(root, 'build', 'media'));
  return new Viewer(t, 'player', variables).connect();
}

function startHome(t) {
  drawArtwork(path.join(root, 'build', 'artwork'));
  makeMedia(path.join(root, 'build', 'media'));
  return new Viewer(t, 'home').connect();
}

const idsOf = (player, kind) =>
  player.tracks[kind].filter((track) => track.selected).map((track) => track.language);

/** The numbers that the pictures of a file carry, as another program decodes them. */
function numbersIn(file) {
  const { x, y, width, height } = counter;
  const row = `crop=${width}:2:${x}:${y + height / 2},format=gray`;
  const words = ['-v', 'error', '-i', file, '-vf', row, '-f', 'rawvideo', '-'];
  const rows = execFileSync('ffmpeg', words, { maxBuffer: 1e8 });
  const screenAt = (first) => ({
    colorAt: (column) => `#${rows.toString('hex', first + column - x, first + column - x + 1)}`
  });
  const size = 2 * width;
  const whole = { x: 0, y: 0, w: picture.width };
  return Array.from({ length: rows.length / size }, (_, index) =>
    readCounter(screenAt(index * size), whole, picture.width)
  );
}

test('each picture of the film carries its own number', (t) => {
  const folder = path.join(root, 'build', 'media');
  makeMedia(folder);
  const numbers = numbersIn(path.join(folder, 'film.mp4'));
  t.equal(numbers.length, 1200);
  t.deepEqual(
    numbers.filter((number, index) => number !== index),
    []
  );
  t.end();
});

test('at each time the screen shows the picture of that time', (t) =>
  start(t).then((viewer) => {
    const lookAt = (position) =>
      viewer
        .waitFor(film, 'playing', position)
        .then(() => viewer.see(`at-${position}.png`))
        .then((seen) => {
          t.ok(isRight(seen), describe(seen));
          t.ok(seen.number >= numberAt(position), `not before ${position} ms`);
          return seen.number;
        });
    return lookAt(3000)
      .then((first) => lookAt(5000).then((second) => t.ok(second > first, 'it moves')))
      .then(() => viewer.press('MediaPause ArrowRight'))
      .then(() => viewer.untilFilm((found) => found.state === 'paused' && found.time.now > 15000))
      .then((paused) => {
        const due = numberAt(paused.time.now);
        return viewer
          .untilFilm((found) => found.picture === due * 40)
          .then(() => viewer.see('paused.png'))
          .then((seen) => t.equal(seen.number, due, 'standing still, the very picture'));
      });
  }));

/** How often a tone of the last `seconds` of a WAV file of 16 bits in stereo swings in a second. */
function lastTone(file, seconds) {
  const data = fs.readFileSync(file);
  const channels = data.readUInt16LE(22);
  const rate = data.readUInt32LE(24);
  const bits = data.readUInt16LE(34);
  if (channels !== 2 || bits !== 16) throw new Error(`${file} has ${channels} of ${bits} bits`);
  const count = Math.floor(seconds * rate);
  const first = data.length - count * 4;
  let swings = 0;
  for (let at = 1; at < count; at++) {
    const [before, after] = [at - 1, at].map((index) => data.readInt16LE(first + index * 4));
    if (before < 0 && after >= 0) swings++;
  }
  return swings / seconds;
}

test('the languages of sound and subtitles can be chosen', (t) =>
  start(t, { QUIRAVENT_AUDIO: 'wav', QUIRAVENT_AUDIO_FILE: 'sound.wav' }).then((viewer) =>
    viewer
      .waitFor(film, 'playing', 500)
      .then((player) =>
        t.deepEqual([idsOf(player, 'audio'), idsOf(player, 'subtitle')], [['eng'], []])
      )
      .then(() => viewer.press('ArrowUp ArrowDown Enter ArrowRight ArrowDown ArrowDown Enter'))
      .then(() => viewer.untilFilm((player) => idsOf(player, 'subtitle').length > 0))
      .then((player) => {
        t.deepEqual([idsOf(player, 'audio'), idsOf(player, 'subtitle')], [['por'], ['por']]);
        return viewer.press('ArrowUp ArrowUp Enter GoBack');
      })
      .then(() => viewer.untilFilm((player) => idsOf(player, 'subtitle').length === 0))
      .then((player) => viewer.waitFor(film, 'playing', player.time.now + 2000))
      .then(() => viewer.leave('MediaStop'))
      .then((end) => {
        t.deepEqual(end, { code: 0, signal: null }, 'stop leaves the player');
        const tone = lastTone(viewer.file('sound.wav'), 0.5);
        // The other language has 440 Hz; a busy machine leaves some of a tone out.
        t.ok(Math.abs(tone - 660) < 100, `Portuguese is heard: ${tone} Hz`);
      })
  ));

test('an advertisement interrupts the film, which goes on where it was', (t) =>
  start(t).then((viewer) => {
    let interrupted = null;
    return viewer
      .waitFor(film, 'playing', 200)
      .then(() => viewer.press('AudioVolumeMute ArrowRight ArrowRight ArrowRight'))
      .then(() => viewer.waitFor(advertisement, 'playing', 400))
      .then(() => viewer.request('players'))
      .then((answer) => {
        interrupted = answer.players[0];
        const ad = answer.players[1];
        t.deepEqual([interrupted.state, ad.kind, ad.volume], ['paused', 'ad', 0]);
        return viewer.press('ArrowRight');
      })
      .then(() => viewer.untilFilm((player) => player.state === 'playing'))
      .then((player) => {
        t.ok(
          player.time.now - interrupted.time.now < 10000,
          'keys for the film meant nothing then'
        );
        return viewer.request('players');
      })
      .then((answer) => t.equal(answer.players.length, 1, 'the advertisement is gone'))
      .then(() => viewer.see('after.png'))
      .then((seen) => t.ok(isRight(seen), describe(seen)));
  }));

/** Whether a screen shows the dots that go round while a film is waited for. */
function hasSpinner(screen) {
  const brightest = '#ffb454';
  for (let y = 310; y < 410; y += 2) {
    for (let x = 590; x < 690; x += 2) if (screen.colorAt(x, y) === brightest) return true;
  }
  return false;
}

test('a viewer sees that a film is waited for', (t) =>
  start(t, { QUIRAVENT_FAULTS: 'stalled 0-100000 off' }).then((viewer) => {
    const untilSpinner = (isShown) => {
      const file = viewer.file('waiting.png');
      return viewer
        .press('Info')
        .then(() => viewer.request('capture', { file }))
        .then(() => hasSpinner(readPicture(file)) === isShown || untilSpinner(isShown));
    };
    return viewer
      .waitFor(film, 'playing', 200)
      .then(() => untilSpinner(false))
      .then(() => viewer.request('faults', { fault: 1, on: true }))
      .then(() => viewer.press('ArrowRight'))
      .then(() => viewer.waitFor(film, 'buffering'))
      .then(() => untilSpinner(true))
      .then(() => viewer.request('faults', { fault: 1, on: false }))
      .then(() => viewer.waitFor(film, 'playing', 10000))
      .then(() => viewer.press('MediaPause'))
      .then(() => untilSpinner(false))
      .then((isGone) => t.ok(isGone));
  }));

test('the home screen plays a film, and is there again when it is left', (t) =>
  startHome(t).then((viewer) => {
    const players = () => viewer.request('players').then((answer) => answer.players.length);
    // Keys mean nothing until the home screen is there.
    const untilPlaying = () =>
      viewer
        .press('MediaPlay')
        .then(players)
        .then((count) => count > 0 || untilPlaying());
    const untilLeft = () => players().then((count) => count === 0 || untilLeft());
    return untilPlaying()
      .then(() => viewer.waitFor(film, 'playing', 1000))
      .then(() => viewer.see('film.png'))
      .then((seen) => t.ok(isRight(seen), describe(seen)))
      .then(() => viewer.press('GoBack'))
      .then(untilLeft)
      .then(untilPlaying)
      .then(() => viewer.waitFor(film + 1, 'playing'))
      .then((second) => t.equal(second.player, 2, 'another player'));
  }));

test('the keys of the remote control change speed, place and volume', (t) =>
  start(t).then((viewer) => {
    // Each with what the film's report says afterwards.
    const steps = [
      ['MediaFastForward', (player) => player.speed === 2],
      ['MediaFastForward', (player) => player.speed === 4],
      ['MediaPlay', (player) => player.speed === 1 && player.state === 'playing'],
      ['MediaRewind', (player) => player.speed === -2],
      ['MediaPlayPause', (player) => player.speed === 1],
      ['Enter', (player) => player.state === 'paused'],
      ['ArrowRight', (player) => player.time.now >= 10000],
      ['ArrowLeft', (player) => player.time.now < 10000],
      ['AudioVolumeMute', (player) => player.volume === 0],
      ['AudioVolumeUp', (player) => player.volume === 100],
      ['AudioVolumeUp', (player) => player.volume === 200]
    ];
    return viewer
      .waitFor(film, 'playing')
      .then(() =>
        inSequence(steps, (step) =>
          viewer
            .press(step[0])
            .then(() => viewer.untilFilm(step[1]))
            .then(() => t.pass(step[0]))
        )
      )
      .then(() => viewer.leave('GoBack'))
      .then((end) => t.deepEqual(end, { code: 0, signal: null }, 'back leaves the player'));
  }));

test('a film that the television interrupts goes on with it', (t) =>
  start(t).then((viewer) =>
    viewer
      .waitFor(film, 'playing')
      .then(() => viewer.request('state', { state: 'overlay' }))
      .then(() => viewer.waitFor(film, 'suspended'))
      .then(() => viewer.press('MediaPlay'))
      .then(() => viewer.request('state', { state: 'running' }))
      .then(() => viewer.untilFilm((player) => player.state === 'playing'))
      .then((player) => t.equal(player.state, 'playing'))
  ));
