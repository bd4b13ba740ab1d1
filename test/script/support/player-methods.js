'use strict';

// What both kinds of player do alike, as tests over a player and the prefix of its functions in the
// porting layer.

const recorder = require('./recorder');

/** Methods that only pass a call on, with or without arguments. */
function testPlainMethods(t, made, prefix, methods) {
  methods.forEach((name) => {
    const fn = prefix + name[0].toUpperCase() + name.slice(1);
    [0, 8].forEach((status) => {
      recorder.reset();
      recorder.once(fn, { status });
      t.equal(made.player[name](1, 'more'), undefined, name);
      t.deepEqual(recorder.sequence(), [[fn, made.handle]]);
      t.equal(recorder.calls()[0].thread, 'script');
    });
  });
}

// [argument, volume that arrives; null where none does]: the whole part times 100, of that 8 bits.
const VOLUMES = [
  [0, 0],
  [1, 100],
  [2, 200],
  [3, 44],
  [-1, 156],
  [0.5, 0],
  [0.99, 0],
  [1.5, 100],
  [-0.9, 0],
  [-1.9, 156],
  [256, 0],
  [2147483647, 156],
  [-2147483648, 0],
  [NaN, 0],
  [undefined, null],
  [null, null],
  ['1', null],
  [true, null],
  [{}, null],
  [new Number(1), null]
];

function testVolumes(t, made, prefix) {
  VOLUMES.forEach((row) => {
    recorder.reset();
    t.equal(made.player.setVolume(row[0]), undefined);
    const expected = row[1] === null ? [] : [[`${prefix}SetVolume`, made.handle, row[1]]];
    t.deepEqual(recorder.sequence(), expected, `volume ${row[0]}`);
  });
  recorder.reset();
  t.equal(made.player.setVolume(), undefined);
  t.deepEqual(recorder.calls(), []);
}

// [how the porting layer answers, [now, begin, end]]
const TIMES = [
  [{ outputs: { begin: 1, now: 2, end: 3 } }, [2, 1, 3]],
  [{ status: 5, outputs: { begin: 1, now: 2, end: 3 } }, [2, 1, 3]],
  [{ outputs: { begin: 4294967295, now: 2147483648, end: 0 } }, [2147483648, 4294967295, 0]],
  [{ outputs: { begin: null, now: null, end: null } }, [0, 0, 0]]
];

function testTimes(t, made, prefix) {
  TIMES.forEach((row) => {
    recorder.reset();
    recorder.once(`${prefix}GetTime`, row[0]);
    const time = made.player.getTime('more');
    t.deepEqual(time, { now: row[1][0], begin: row[1][1], end: row[1][2] });
    t.deepEqual(Object.keys(time), ['now', 'begin', 'end']);
    t.equal(Object.getPrototypeOf(time), Object.prototype);
    t.deepEqual(recorder.sequence(), [[`${prefix}GetTime`, made.handle, 'out']]);
  });
}

/** `count` buffered times, the first of which begins at `begin`. */
function bufferedTimes(begin, count) {
  return Array.from({ length: count }, (each, index) => {
    return { begin: begin + index, now: 77, end: begin + index + 100 };
  });
}

/** What a script is to see of them. */
function ranges(times) {
  return times.map((time) => ({ begin: time.begin, end: time.end }));
}

module.exports = { testPlainMethods, testVolumes, testTimes, bufferedTimes, ranges };
