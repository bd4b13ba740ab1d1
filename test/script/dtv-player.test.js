'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { keep } = require('./support/graphics');
const { collect } = require('./support/collection');
const { runScript } = require('./support/process');

/** A new player with a handle, kept from the collector. */
function newPlayer(handle) {
  recorder.reset();
  recorder.once('pl_dtv_Action_getPlayer', { outputs: { handle } });
  const player = keep(quiravent.tunerServices.getPlayer(1, 2, 3));
  recorder.clear();
  return player;
}

const rect = (x, y, w, h) => ({ x, y, w, h });
const SET_BOUNDS = 'pl_dtv_Player_SetBounds';
const SET_VOLUME = 'pl_dtv_Player_SetVolume';
const CAPTIONS = 'pl_dtv_Player_ToggleClosedCaption';

// [method, arguments, function, arguments that arrive behind the handle]
const CALLS = [
  ['start', [], 'pl_dtv_Player_Start', []],
  ['start', [1, 2], 'pl_dtv_Player_Start', []],
  ['stop', [], 'pl_dtv_Player_Stop', []],
  ['setBounds', [rect(1, 2, 3, 4)], SET_BOUNDS, [rect(1, 2, 3, 4)]],
  ['setBounds', [rect('5', 6.9, -1, 4294967295)], SET_BOUNDS, [rect(5, 6, 4294967295, 4294967295)]],
  ['setBounds', [{ h: 3 }], SET_BOUNDS, [rect(0, 0, 0, 3)]],
  ['setBounds', [{}], SET_BOUNDS, [rect(0, 0, 0, 0)]],
  ['setBounds', [5], SET_BOUNDS, [rect(0, 0, 0, 0)]],
  ['setBounds', ['text'], SET_BOUNDS, [rect(0, 0, 0, 0)]],
  ['setVolume', [0.5], SET_VOLUME, [50]],
  ['setVolume', [0.29], SET_VOLUME, [28]],
  ['setVolume', [0.009], SET_VOLUME, [0]],
  ['setVolume', [1], SET_VOLUME, [100]],
  ['setVolume', [2.55], SET_VOLUME, [254]],
  ['setVolume', [2.56], SET_VOLUME, [0]],
  ['setVolume', [3], SET_VOLUME, [44]],
  ['setVolume', [], SET_VOLUME, [0]],
  ['setVolume', [undefined], SET_VOLUME, [0]],
  ['setVolume', [null], SET_VOLUME, [0]],
  ['setVolume', ['0.5'], SET_VOLUME, [50]],
  ['setVolume', ['loud'], SET_VOLUME, [0]],
  ['setVolume', [true], SET_VOLUME, [100]],
  ['setVolume', [NaN], SET_VOLUME, [0]],
  ['setVolume', [-1], SET_VOLUME, [0]],
  ['setVolume', [-Infinity], SET_VOLUME, [0]],
  ['setVolume', [Infinity], SET_VOLUME, [255]],
  ['setVolume', [1e12], SET_VOLUME, [255]],
  ['toggleClosedCaption', [true], CAPTIONS, [true, 1]],
  ['toggleClosedCaption', ['256'], CAPTIONS, [true, 256]],
  ['toggleClosedCaption', ['65536'], CAPTIONS, [true, 0]],
  ['toggleClosedCaption', ['4294967295'], CAPTIONS, [true, 65535]],
  ['toggleClosedCaption', [new Number(7)], CAPTIONS, [true, 7]],
  ['toggleClosedCaption', [false], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [undefined], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [null], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', ['on'], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', ['0'], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [{}], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [1], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [256], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [0], CAPTIONS, [false, 0]],
  ['toggleClosedCaption', [NaN], CAPTIONS, [false, 0]]
];

test('a player passes on what it is told, whatever the status', (t) => {
  const player = newPlayer(4294967295);
  CALLS.forEach((row) => {
    recorder.reset();
    recorder.once(row[2], { status: 5 });
    t.equal(player[row[0]].apply(player, row[1]), undefined);
    const what = `${row[0]}(${JSON.stringify(row[1])})`;
    t.deepEqual(recorder.sequence(), [[row[2], 4294967295].concat(row[3])], what);
    t.equal(recorder.calls()[0].thread, 'script');
  });
  t.end();
});

const NO_BOUNDS = 'setBounds() error. This argument must be a rectangle object ({x, y, w, h}.';

function refusesUndefined(t, player) {
  recorder.reset();
  [[], [undefined], [undefined, 1, 2, 3]].forEach((args) => {
    t.throws(
      () => player.setBounds.apply(player, args),
      (error) => error.constructor === TypeError && error.message === NO_BOUNDS
    );
  });
  t.deepEqual(recorder.calls(), []);
}

test('setBounds refuses undefined alone', (t) => {
  refusesUndefined(t, newPlayer(5));
  t.end();
});

test('a released player is released once, and then does nothing', (t) => {
  const player = newPlayer(77);
  recorder.once('pl_dtv_Action_releasePlayer', { status: 1 });
  t.equal(player.release(), undefined);
  t.deepEqual(recorder.sequence(), [['pl_dtv_Action_releasePlayer', 77]]);
  recorder.clear();
  t.equal(player.release(), undefined);
  CALLS.forEach((row) => t.equal(player[row[0]].apply(player, row[1]), undefined, row[0]));
  t.deepEqual(recorder.calls(), []);
  refusesUndefined(t, player);
  t.end();
});

test('each player has a handle of its own', (t) => {
  const players = [newPlayer(11), newPlayer(12)];
  players[0].start();
  players[1].start();
  players[0].release();
  players[1].stop();
  t.deepEqual(
    recorder.calls().map((call) => call.args[0]),
    [11, 12, 11, 12]
  );
  t.end();
});

/** Makes players with these handles, and keeps none; releases those with an odd one. */
function dropPlayers(handles) {
  handles.forEach((handle) => {
    recorder.once('pl_dtv_Action_getPlayer', { outputs: { handle } });
    const player = quiravent.tunerServices.getPlayer(1, 2, 3);
    if (handle % 2) player.release();
  });
}

test('a forgotten player is released on the script thread, exactly once', (t) => {
  recorder.reset();
  const handles = Array.from({ length: 60 }, (each, index) => 1000 + index);
  dropPlayers(handles);
  const releases = () => recorder.argsOf('pl_dtv_Action_releasePlayer').map((args) => args[0]);
  return collect(() => releases().length >= handles.length)
    .then(() => collect())
    .then(() => {
      t.deepEqual(
        releases().sort((a, b) => a - b),
        handles
      );
      const calls = recorder.calls('pl_dtv_Action_releasePlayer');
      t.ok(calls.every((call) => call.thread === 'script'));
    });
});

test('fatal: null as bounds', (t) => {
  const source = `
    const player = quiravent.tunerServices.getPlayer(1, 2, 3);
    recorder.echo();
    player.setBounds(null);
    say('survived');`;
  return runScript(source).then((result) => {
    t.equal(result.signal, 'SIGSEGV');
    t.equal(result.stdout, '');
  });
});
