'use strict';

// What the methods of the three kinds of player pass on, and what they give.

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { keep } = require('./support/graphics');
const { newPlayer } = require('./support/workers');
const { says } = require('./support/process');
const { rect } = require('./support/rows');

/** A live player that a handle stands for, with nothing in the log; kept from the collector. */
function newLivePlayer(handle) {
  recorder.once('pl_dtv_Action_getPlayer', { outputs: { handle } });
  const player = keep(quiravent.tunerServices.getPlayer(1, 2, 3));
  recorder.clear();
  return { player, handle };
}

/** Rows for a method of one argument, by what arrives: a number, or `nothing`. */
function rowsOf(groups) {
  const rows = Object.keys(groups).map((name) =>
    groups[name].map((given) => [[given], name === 'nothing' ? null : [Number(name)]])
  );
  return [].concat.apply([], rows);
}

// Rows are [arguments, those that arrive behind the handle, or null where there is no call].

const PLAIN = [
  [[], []],
  [[1, 'more'], []]
];

const BOUNDS = [
  [[rect(1, 2, 3, 4)], [rect(1, 2, 3, 4)]],
  [[rect('5', 6.9, -1, 4294967295)], [rect(5, 6, 4294967295, 4294967295)]],
  [[{ y: 5 }], [rect(0, 5, 0, 0)]],
  [[{ h: 3 }], [rect(0, 0, 0, 3)]]
].concat([{}, 5, 'text', true].map((given) => [[given], [rect(0, 0, 0, 0)]]));

// The whole part times 100, of that 8 bits.
const VOLUMES = rowsOf({
  0: [0, 0.5, 0.99, -0.9, 256, -2147483648, NaN],
  44: [3],
  100: [1, 1.5],
  156: [-1, -1.9, 2147483647],
  200: [2],
  nothing: [undefined, null, '1', true, {}, new Number(1)]
}).concat([[[], null]]);

const LIVE_VOLUMES = rowsOf({
  0: [0.009, 2.56, undefined, null, 'loud', NaN, -1, -Infinity],
  28: [0.29],
  44: [3],
  50: [0.5, '0.5'],
  100: [1, true],
  254: [2.55],
  255: [Infinity, 1e12]
}).concat([[[], [0]]]);

const POSITIONS = rowsOf({
  0: [undefined, null, 'soon'],
  1: [1.9, 4294967297, true],
  12: ['12'],
  1000: [1000],
  4294967295: [-1]
}).concat([[[], [0]]]);

const CAPTIONS = [undefined, null, false, 'on', '0', {}, 1, 256, 0, NaN]
  .map((given) => [[given], [false, 0]])
  .concat([
    [[], [false, 0]],
    [[true], [true, 1]],
    [['256'], [true, 256]],
    [['65536'], [true, 0]],
    [['4294967295'], [true, 65535]],
    [[new Number(7)], [true, 7]]
  ]);

// A selection demands a text and a number. [kind, id, number of the kind, id that arrives]
const SELECTIONS = [
  ['audio', 5, 1, 5],
  ['subtitle', 4294967295, 2, 4294967295],
  ['video', -1, 0, 4294967295],
  ['unknown', 1.9, 3, 1],
  ['AUDIO', NaN, 65535, 0]
]
  .map((row) => [row.slice(0, 2), row.slice(2)])
  .concat(
    [[], ['audio'], [1, 2], ['audio', '2'], ['audio', null], [undefined, 2], [{}, 2]].map(
      (args) => [args, null]
    )
  );

const KINDS = {
  media: {
    prefix: 'pl_media_UrlPlayer_',
    make: () => newPlayer('media'),
    calls: {
      fetch: PLAIN,
      start: PLAIN,
      pause: PLAIN,
      resume: PLAIN,
      stop: PLAIN,
      setBounds: BOUNDS,
      seek: POSITIONS,
      setVolume: VOLUMES,
      selectTrack: SELECTIONS,
      getThumbnail: [[], [1, 2, 3], [{}, () => {}]].map((args) => [args, null])
    }
  },
  ad: {
    prefix: 'pl_media_AdPlayer_',
    make: () => newPlayer('ad'),
    calls: { start: PLAIN, pause: PLAIN, resume: PLAIN, stop: PLAIN, setVolume: VOLUMES }
  },
  dtv: {
    prefix: 'pl_dtv_Player_',
    make: () => Promise.resolve(newLivePlayer(4294967295)),
    calls: {
      start: PLAIN,
      stop: PLAIN,
      setBounds: BOUNDS,
      setVolume: LIVE_VOLUMES,
      toggleClosedCaption: CAPTIONS
    }
  }
};

const made = {};

test('a player of each kind', (t) =>
  Promise.all(Object.keys(KINDS).map((kind) => KINDS[kind].make())).then((players) => {
    Object.keys(KINDS).forEach((kind, index) => (made[kind] = players[index]));
    t.ok(players.every((each) => each.player));
  }));

const functionOf = (kind, method) => KINDS[kind].prefix + method[0].toUpperCase() + method.slice(1);

/** Calls a method for each row, with each status as answer; none of them is looked at. */
function checkRows(t, kind, method) {
  const { player, handle } = made[kind];
  const fn = functionOf(kind, method);
  KINDS[kind].calls[method].forEach((row) =>
    [0, 5].forEach((status) => {
      recorder.reset();
      if (row[1]) recorder.once(fn, { status });
      const what = `${method}(${JSON.stringify(row[0])})`;
      t.equal(player[method].apply(player, row[0]), undefined, what);
      t.deepEqual(recorder.sequence(), row[1] ? [[fn, handle].concat(row[1])] : [], what);
      t.ok(recorder.calls().every((call) => call.thread === 'script'));
    })
  );
}

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

Object.keys(KINDS).forEach((kind) => {
  test(`${kind}: methods pass on what they are given, and drop the status`, (t) => {
    Object.keys(KINDS[kind].calls).forEach((method) => checkRows(t, kind, method));
    t.end();
  });

  test(`${kind}: players reach the porting layer with their own handles`, (t) =>
    KINDS[kind].make().then((other) => {
      recorder.clear();
      other.player.start();
      made[kind].player.stop();
      other.player.stop();
      t.deepEqual(
        recorder.calls().map((call) => call.args[0]),
        [other.handle, made[kind].handle, other.handle]
      );
    }));
});

['media', 'dtv'].forEach((kind) => {
  test(`${kind}: setBounds refuses undefined alone`, (t) => {
    refusesUndefined(t, made[kind].player);
    t.end();
  });

  test(`${kind}: setBounds reads x, y, w, h in this order`, (t) => {
    const read = [];
    const bounds = {};
    ['h', 'w', 'y', 'x'].forEach((name) => {
      Object.defineProperty(bounds, name, { get: () => read.push(name) });
    });
    made[kind].player.setBounds(bounds);
    t.deepEqual(read, ['x', 'y', 'w', 'h']);
    t.end();
  });
});

test('a released live player is released once, and then does nothing', (t) => {
  const { player } = newLivePlayer(77);
  recorder.reset();
  recorder.once('pl_dtv_Action_releasePlayer', { status: 1 });
  t.equal(player.release(), undefined);
  t.deepEqual(recorder.sequence(), [['pl_dtv_Action_releasePlayer', 77]]);
  recorder.clear();
  t.equal(player.release(), undefined);
  const { calls } = KINDS.dtv;
  Object.keys(calls).forEach((method) =>
    calls[method].forEach((row) => t.equal(player[method].apply(player, row[0]), undefined, method))
  );
  t.deepEqual(recorder.calls(), []);
  refusesUndefined(t, player);
  t.end();
});

// [how the porting layer answers, what the script sees]
const TIMES = [
  [{ outputs: { begin: 1, now: 2, end: 3 } }, { now: 2, begin: 1, end: 3 }],
  [
    { status: 5, outputs: { begin: 1, now: 2, end: 3 } },
    { now: 2, begin: 1, end: 3 }
  ],
  [
    { outputs: { begin: 4294967295, now: 2147483648, end: 0 } },
    { now: 2147483648, begin: 4294967295, end: 0 }
  ],
  [{ outputs: { begin: null, now: null, end: null } }, { now: 0, begin: 0, end: 0 }]
];

function bufferedTimes(count) {
  return Array.from({ length: count }, (each, index) => {
    return { begin: 4294967100 + index, now: 77, end: 4294967100 + index + 100 };
  });
}

/** What a script is to see of them. */
const ranges = (times) => times.map((time) => ({ begin: time.begin, end: time.end }));

// [ranges there are, count that is told, status]; never is an eleventh record read.
const BUFFERS = [
  [0, 0, 0],
  [1, 1, 0],
  [1, 1, 4],
  [3, 3, 4],
  [10, 10, 0],
  [10, 11, 4],
  [10, 256, 0],
  [10, 267, 0],
  [10, 1000000, 0],
  [10, 4294967295, 0]
];

['media', 'ad'].forEach((kind) => {
  test(`${kind}: getTime gives now, begin and end`, (t) => {
    const { player, handle } = made[kind];
    const fn = functionOf(kind, 'getTime');
    TIMES.forEach((row) => {
      recorder.reset();
      recorder.once(fn, row[0]);
      const time = player.getTime('more');
      t.deepEqual(time, row[1]);
      t.deepEqual(Object.keys(time), ['now', 'begin', 'end']);
      t.equal(Object.getPrototypeOf(time), Object.prototype);
      t.deepEqual(recorder.sequence(), [[fn, handle, 'out']]);
    });
    t.end();
  });

  test(`${kind}: getBufferedTimes gives ${kind === 'ad' ? 'the last range' : 'all ranges'}`, (t) => {
    const { player, handle } = made[kind];
    const fn = functionOf(kind, 'getBufferedTimes');
    BUFFERS.forEach((row) => {
      recorder.reset();
      const times = bufferedTimes(row[0]);
      recorder.once(fn, { status: row[2], outputs: { times, count: row[1] } });
      const result = player.getBufferedTimes('more');
      const all = ranges(times);
      t.deepEqual(result, kind === 'ad' ? all.pop() : all, row.join());
      t.equal(Array.isArray(result), kind === 'media');
      const seen = [].concat(result || []);
      t.ok(seen.every((range) => Object.keys(range).join() === 'begin,end'));
      t.deepEqual(recorder.sequence(), [[fn, handle, 'out', 10]]);
    });
    t.end();
  });
});

// [asked for, arrives, answer, result]
const SPEEDS = [
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

test('setPlaybackSpeed gives the speed that the porting layer left', (t) => {
  const { player, handle } = made.media;
  const fn = functionOf('media', 'setPlaybackSpeed');
  SPEEDS.forEach((row) => {
    recorder.reset();
    recorder.once(fn, row[2]);
    t.equal(player.setPlaybackSpeed(row[0]), row[3], JSON.stringify(row));
    t.deepEqual(recorder.sequence(), [[fn, handle, row[1]]]);
  });
  recorder.reset();
  [[], [undefined], ['2'], [null], [true], [{}]].forEach((args) => {
    t.equal(player.setPlaybackSpeed.apply(player, args), undefined);
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

const tracksOf = (count) =>
  Array.from({ length: count }, (each, index) => {
    return { id: 4294967295 - index, language: `l${index}` };
  });

// By kind as text, its number.
const TRACK_KINDS = {
  video: 0,
  audio: 1,
  subtitle: 2,
  unknown: 3,
  Video: 65535,
  '': 65535,
  'audio ': 65535,
  'audio\0': 1
};

test('getTracks gives a list of tracks', (t) => {
  const { player, handle } = made.media;
  const fn = functionOf('media', 'getTracks');
  Object.keys(TRACK_KINDS).forEach((kind) => {
    recorder.reset();
    const tracks = [{ id: 7, language: 'por' }];
    recorder.once(fn, { status: 3, outputs: { tracks, count: 1 } });
    t.deepEqual(player.getTracks(kind, 'more'), tracks, JSON.stringify(kind));
    t.deepEqual(recorder.sequence(), [[fn, handle, TRACK_KINDS[kind], 'out', 10]]);
  });
  [2, 10, 11, 256, 267, 1000000, 4294967295].forEach((count) => {
    const tracks = tracksOf(Math.min(count, 10));
    recorder.once(fn, { outputs: { tracks, count } });
    const result = player.getTracks('audio');
    t.ok(Array.isArray(result));
    t.deepEqual(result, tracks, `count ${count}`);
    result.forEach((track) => t.deepEqual(Object.keys(track), ['id', 'language']));
  });
  ['', 'und', 'português', 'x'.repeat(31)].forEach((language) => {
    recorder.once(fn, { outputs: { tracks: [{ id: 1, language }] } });
    t.equal(player.getTracks('audio')[0].language, language);
  });
  recorder.reset();
  [[], [undefined], [null], [1], [{}], [new String('audio')]].forEach((args) => {
    t.equal(player.getTracks.apply(player, args), undefined);
  });
  t.deepEqual(recorder.calls(), [], 'what is no text as kind reaches nothing');
  t.end();
});

test('without tracks, getTracks writes a line and gives undefined', (t) => {
  const source = `
    quiravent.mediaServices.getPlayer('url', {}, (error, player) => {
      player.getTracks();
      player.getTracks(1);
      say(JSON.stringify(player.getBufferedTimes()) + '\\n');
      say(player.getTracks('audio') + '\\n');
      recorder.once('${functionOf('media', 'getTracks')}', { status: 5, outputs: { count: 0 } });
      say(player.getTracks('nothing') + '\\n');
    });`;
  const line = '[MediaPlayerWrapper::GetTracks] no value (undefined) returned for JavaScript\n';
  return says(t, source, `[]\n${line}undefined\n${line}undefined\n`);
});
