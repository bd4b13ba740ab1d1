'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { row } = require('./support/rows');

const services = quiravent.tunerServices;
const GET_PLAYER = 'pl_dtv_Action_getPlayer';

test('the reserved entry points take anything and do nothing', (t) => {
  recorder.reset();
  ['getAllTransportStreams', 'getTableInfo', 'unselectTransportStream', 'openDemuxFilter'].forEach(
    (name) => {
      const reserved = services[name];
      [[], [1, 2, 3], ['a', 'b'], [null], [{}, () => {}], [Symbol('s')]].forEach((args) => {
        t.equal(reserved.apply(undefined, args), undefined, name);
      });
    }
  );
  t.deepEqual(recorder.calls(), []);
  t.end();
});

// [arguments, parameter that is told]: the first that is no number.
const BAD_ARGUMENTS = [
  [[], 'videoPid'],
  [['1', 2, 3], 'videoPid'],
  [[null, 2, 3], 'videoPid'],
  [[undefined, '2', 3], 'videoPid'],
  [[{}, 2, 3], 'videoPid'],
  [[true, 2, 3], 'videoPid'],
  [[new Number(1), 2, 3], 'videoPid'],
  [[1], 'audioPid'],
  [[1, '2', 3], 'audioPid'],
  [[1, null, '3'], 'audioPid'],
  [[1, 2], 'pcrPid'],
  [[1, 2, '3'], 'pcrPid'],
  [[1, 2, undefined], 'pcrPid']
];

test('getPlayer refuses what is no number', (t) => {
  recorder.reset();
  BAD_ARGUMENTS.forEach((row) => {
    const text = `getPlayer() error. Number expected in parameter ${row[1]}`;
    t.throws(
      () => services.getPlayer.apply(services, row[0]),
      (error) => error.constructor === TypeError && error.message === text,
      JSON.stringify(row)
    );
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

// [arguments, packet identifiers that arrive]
const IDENTIFIERS = [
  row([256, 257, 258], [256, 257, 258]),
  row([0, 8191, 65535], [0, 8191, 65535]),
  row([-1, 65536, 65537], [65535, 0, 1]),
  row([256.9, -1.9, 0.5], [256, 65535, 0]),
  row([NaN, Infinity, 4294967295], [0, 0, 65535]),
  row([1, 2, 3, 4], [1, 2, 3])
];

test('getPlayer passes 16 bits of each identifier', (t) => {
  IDENTIFIERS.forEach((each) => {
    recorder.reset();
    const player = services.getPlayer.apply(null, each[0]);
    t.ok(player instanceof quiravent.dtvplayer);
    t.deepEqual(Object.getOwnPropertyNames(player), []);
    t.deepEqual(recorder.sequence(), [[GET_PLAYER].concat(each[1], 'out')]);
    t.equal(recorder.calls()[0].thread, 'script');
    player.release();
  });
  t.end();
});

test('getPlayer gives undefined for a player that is refused', (t) => {
  const refusals = [
    { status: 2 },
    { status: 4, outputs: { handle: 9 } },
    { status: -1, outputs: { handle: 9 } },
    { status: 65535, outputs: { handle: 9 } },
    { status: 0, outputs: { handle: 0 } },
    { status: 0, outputs: { handle: null } }
  ];
  refusals.forEach((behaviour) => {
    recorder.reset();
    recorder.once(GET_PLAYER, behaviour);
    t.equal(services.getPlayer(1, 2, 3), undefined, JSON.stringify(behaviour));
    t.equal(recorder.calls().length, 1, 'and nothing is released');
  });
  t.end();
});
