'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const { newPlayer } = require('./support/workers');
const methods = require('./support/player-methods');
const { runScript } = require('./support/process');

const PREFIX = 'pl_media_UrlPlayer_';
let made = null;

test('a player', (t) => {
  return newPlayer('media').then((player) => {
    made = player;
    t.ok(player);
  });
});

test('most methods pass the handle on, and drop the status', (t) => {
  methods.testPlainMethods(t, made, PREFIX, ['fetch', 'start', 'pause', 'resume', 'stop']);
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

const rect = (x, y, w, h) => ({ x, y, w, h });

// [argument, rectangle that arrives]
const BOUNDS = [
  [rect(1, 2, 3, 4), rect(1, 2, 3, 4)],
  [rect('5', 6.9, -1, 4294967295), rect(5, 6, 4294967295, 4294967295)],
  [{ y: 5 }, rect(0, 5, 0, 0)],
  [{}, rect(0, 0, 0, 0)],
  [5, rect(0, 0, 0, 0)],
  ['text', rect(0, 0, 0, 0)],
  [true, rect(0, 0, 0, 0)]
];

test('setBounds refuses undefined alone', (t) => {
  BOUNDS.forEach((row) => {
    recorder.reset();
    t.equal(made.player.setBounds(row[0]), undefined);
    t.deepEqual(recorder.sequence(), [[`${PREFIX}SetBounds`, made.handle, row[1]]]);
  });
  recorder.reset();
  const text = 'setBounds() error. This argument must be a rectangle object ({x, y, w, h}.';
  [[], [undefined], [undefined, 1, 2, 3]].forEach((args) => {
    t.throws(
      () => made.player.setBounds.apply(made.player, args),
      (error) => error instanceof TypeError && error.message === text
    );
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('setBounds reads x, y, w, h in this order', (t) => {
  const read = [];
  const bounds = {};
  ['h', 'w', 'y', 'x'].forEach((name) => {
    Object.defineProperty(bounds, name, { get: () => read.push(name) });
  });
  made.player.setBounds(bounds);
  t.deepEqual(read, ['x', 'y', 'w', 'h']);
  t.end();
});

test('fatal: null as bounds', (t) => {
  const source = `
    quiravent.mediaServices.getPlayer('url', {}, (error, player) => {
      recorder.echo();
      player.setBounds(null);
      say('survived');
    });`;
  return runScript(source).then((result) => {
    t.equal(result.signal, 'SIGSEGV');
    t.equal(result.stdout, '');
  });
});

test('seek converts what it is given', (t) => {
  // [arguments, position that arrives]
  const rows = [
    [[1000], 1000],
    [[], 0],
    [[undefined], 0],
    [[null], 0],
    [['12'], 12],
    [['soon'], 0],
    [[-1], 4294967295],
    [[1.9], 1],
    [[4294967297], 1],
    [[true], 1]
  ];
  rows.forEach((row) => {
    recorder.reset();
    t.equal(made.player.seek.apply(made.player, row[0]), undefined);
    t.deepEqual(recorder.sequence(), [[`${PREFIX}Seek`, made.handle, row[1]]]);
  });
  t.end();
});

test('setPlaybackSpeed gives the speed that the porting layer left', (t) => {
  const fn = `${PREFIX}SetPlaybackSpeed`;
  // [asked for, arrives, answer, result]
  const rows = [
    [2, 2, {}, 2],
    [-3, -3, {}, -3],
    [2, 2, { outputs: { speed: 1 } }, 1],
    [2, 2, { outputs: { speed: -8 } }, -8],
    [2, 2, { status: 6, outputs: { speed: 4 } }, 4],
    [2, 2, { status: 6, outputs: { speed: null } }, 2],
    [1.9, 1, {}, 1],
    [-1.9, -1, {}, -1],
    [4294967295, -1, {}, -1],
    [NaN, 0, {}, 0],
    [0, 0, {}, 0]
  ];
  rows.forEach((row) => {
    recorder.reset();
    recorder.once(fn, row[2]);
    t.equal(made.player.setPlaybackSpeed(row[0]), row[3], JSON.stringify(row));
    t.deepEqual(recorder.sequence(), [[fn, made.handle, row[1]]]);
  });
  recorder.reset();
  [[], [undefined], ['2'], [null], [true], [{}]].forEach((args) => {
    t.equal(made.player.setPlaybackSpeed.apply(made.player, args), undefined);
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('getThumbnail does nothing', (t) => {
  recorder.reset();
  [[], [1, 2, 3], [{}, () => {}]].forEach((args) => {
    t.equal(made.player.getThumbnail.apply(made.player, args), undefined);
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('getBufferedTimes gives a list of ranges', (t) => {
  const fn = `${PREFIX}GetBufferedTimes`;
  [0, 1, 3, 10].forEach((count) => {
    [0, 4].forEach((status) => {
      recorder.reset();
      const times = methods.bufferedTimes(4294967100, count);
      recorder.once(fn, { status, outputs: { times, count } });
      const result = made.player.getBufferedTimes('more');
      t.ok(Array.isArray(result));
      t.deepEqual(result, methods.ranges(times));
      result.forEach((range) => t.deepEqual(Object.keys(range), ['begin', 'end']));
      t.deepEqual(recorder.sequence(), [[fn, made.handle, 'out', 10]]);
    });
  });
  t.end();
});

const tracksOf = (count) =>
  Array.from({ length: count }, (each, index) => {
    return { id: 4294967295 - index, language: `l${index}` };
  });

test('getTracks gives a list of tracks', (t) => {
  const fn = `${PREFIX}GetTracks`;
  // [kind as text, its number]
  const kinds = [
    ['video', 0],
    ['audio', 1],
    ['subtitle', 2],
    ['unknown', 3],
    ['Video', 65535],
    ['', 65535],
    ['audio ', 65535],
    ['audio\0', 1]
  ];
  kinds.forEach((row) => {
    recorder.reset();
    const tracks = [{ id: 7, language: 'por' }];
    recorder.once(fn, { status: 3, outputs: { tracks, count: 1 } });
    t.deepEqual(made.player.getTracks(row[0], 'more'), tracks, JSON.stringify(row));
    t.deepEqual(recorder.sequence(), [[fn, made.handle, row[1], 'out', 10]]);
  });
  [2, 10].forEach((count) => {
    recorder.once(fn, { outputs: { tracks: tracksOf(count) } });
    const result = made.player.getTracks('audio');
    t.ok(Array.isArray(result));
    t.deepEqual(result, tracksOf(count));
    result.forEach((track) => t.deepEqual(Object.keys(track), ['id', 'language']));
  });
  t.end();
});

test('a language is a text of up to 31 bytes', (t) => {
  const fn = `${PREFIX}GetTracks`;
  ['', 'und', 'português', 'x'.repeat(31)].forEach((language) => {
    recorder.once(fn, { outputs: { tracks: [{ id: 1, language }] } });
    t.equal(made.player.getTracks('audio')[0].language, language);
  });
  t.end();
});

test('what is no text as kind of track reaches nothing', (t) => {
  recorder.reset();
  [[], [undefined], [null], [1], [{}], [new String('audio')]].forEach((args) => {
    t.equal(made.player.getTracks.apply(made.player, args), undefined);
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('without tracks, getTracks writes a line and gives undefined', (t) => {
  const source = `
    quiravent.mediaServices.getPlayer('url', {}, (error, player) => {
      player.getTracks();
      player.getTracks(1);
      say(JSON.stringify(player.getBufferedTimes()) + '\\n');
      say(player.getTracks('audio') + '\\n');
      recorder.once('${PREFIX}GetTracks', { status: 5, outputs: { count: 0 } });
      say(player.getTracks('nothing') + '\\n');
    });`;
  return runScript(source).then((result) => {
    const line = '[MediaPlayerWrapper::GetTracks] no value (undefined) returned for JavaScript\n';
    t.equal(result.code, 0, result.stderr);
    t.equal(result.stdout, `[]\n${line}undefined\n${line}undefined\n`);
  });
});

test('a count above 10 never leads to an eleventh record', (t) => {
  [11, 256, 267, 1000000, 4294967295].forEach((count) => {
    recorder.reset();
    const times = methods.bufferedTimes(5, 10);
    recorder.once(`${PREFIX}GetBufferedTimes`, { outputs: { times, count } });
    t.deepEqual(made.player.getBufferedTimes(), methods.ranges(times));
    recorder.once(`${PREFIX}GetTracks`, { outputs: { tracks: tracksOf(10), count } });
    t.deepEqual(made.player.getTracks('audio'), tracksOf(10));
  });
  t.end();
});

test('selectTrack demands a text and a number', (t) => {
  const fn = `${PREFIX}SelectTrack`;
  // [kind, id, [number of the kind, id that arrives]]
  const rows = [
    ['audio', 5, [1, 5]],
    ['subtitle', 4294967295, [2, 4294967295]],
    ['video', -1, [0, 4294967295]],
    ['unknown', 1.9, [3, 1]],
    ['AUDIO', NaN, [65535, 0]]
  ];
  rows.forEach((row) => {
    recorder.reset();
    recorder.once(fn, { status: 2 });
    t.equal(made.player.selectTrack(row[0], row[1]), undefined);
    t.deepEqual(recorder.sequence(), [[fn, made.handle].concat(row[2])]);
  });
  recorder.reset();
  [[], ['audio'], [1, 2], ['audio', '2'], ['audio', null], [undefined, 2], [{}, 2]].forEach(
    (args) => {
      t.equal(made.player.selectTrack.apply(made.player, args), undefined);
    }
  );
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('players reach the porting layer with their own handles', (t) => {
  return newPlayer('media').then((other) => {
    recorder.clear();
    other.player.start();
    made.player.start();
    other.player.seek(3);
    t.deepEqual(
      recorder.calls().map((call) => call.args[0]),
      [other.handle, made.handle, other.handle]
    );
  });
});
