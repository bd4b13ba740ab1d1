'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const { newPlayer } = require('./support/workers');
const methods = require('./support/player-methods');

const PREFIX = 'pl_media_AdPlayer_';
let made = null;

test('an ad player', (t) => {
  return newPlayer('ad').then((player) => {
    made = player;
    t.ok(player);
  });
});

test('most methods pass the handle on, and drop the status', (t) => {
  methods.testPlainMethods(t, made, PREFIX, ['start', 'pause', 'resume', 'stop']);
  t.end();
});

test('the volume is a whole number', (t) => {
  methods.testVolumes(t, made, PREFIX);
  t.end();
});

test('getTime gives now, begin and end', (t) => {
  methods.testTimes(t, made, PREFIX);
  t.end();
});

test('what an ad player has no need of, it doesn’t have', (t) => {
  const missing =
    'fetch setBounds seek setPlaybackSpeed getTracks selectTrack getThumbnail release';
  missing.split(' ').forEach((name) => t.equal(made.player[name], undefined, name));
  t.end();
});

test('getBufferedTimes gives the last range, or undefined', (t) => {
  const fn = `${PREFIX}GetBufferedTimes`;
  // [ranges there are, count that is told]
  const rows = [
    [1, 1],
    [3, 3],
    [10, 10],
    [10, 11],
    [10, 4294967295]
  ];
  rows.forEach((row) => {
    recorder.reset();
    const times = methods.bufferedTimes(4294967100, row[0]);
    recorder.once(fn, { status: 4, outputs: { times, count: row[1] } });
    const result = made.player.getBufferedTimes('more');
    t.deepEqual(result, methods.ranges(times)[row[0] - 1]);
    t.deepEqual(Object.keys(result), ['begin', 'end']);
    t.deepEqual(recorder.sequence(), [[fn, made.handle, 'out', 10]]);
  });
  t.equal(made.player.getBufferedTimes(), undefined);
  t.end();
});
