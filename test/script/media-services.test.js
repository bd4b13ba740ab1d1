'use strict';

const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { says } = require('./support/process');
const { rect } = require('./support/rows');

const services = quiravent.mediaServices;

/** Resolves with what the callback is given, as { error, result }. */
function make(name, url, bounds) {
  return new Promise((resolve) => {
    services[name](url, bounds, (error, result) => resolve({ error, result }));
  });
}

function handleOf(player) {
  recorder.clear();
  player.start();
  return recorder.calls()[0].args[0];
}

// [bounds as given, rectangle that arrives]
const BOUNDS = [
  [rect(1, 2, 3, 4), rect(1, 2, 3, 4)],
  [{}, rect(0, 0, 0, 0)],
  [{ w: 7 }, rect(0, 0, 7, 0)],
  [rect('5', 6.9, -1, 4294967296), rect(5, 6, 4294967295, 0)],
  [rect(null, true, NaN, {}), rect(0, 1, 0, 0)],
  [5, rect(0, 0, 0, 0)],
  ['text', rect(0, 0, 0, 0)],
  [false, rect(0, 0, 0, 0)],
  [Object.assign(() => {}, { x: 9 }), rect(9, 0, 0, 0)]
];

test('getPlayer reads a rectangle, and tests nothing of it', (t) => {
  const check = (row) => {
    recorder.reset();
    return make('getPlayer', 'url', row[0]).then((outcome) => {
      t.equal(outcome.error, null);
      t.deepEqual(recorder.sequence(), [['pl_media_CreateUrlPlayer', 'url', row[1], 'out']]);
    });
  };
  return inSequence(BOUNDS, check);
});

test('getPlayer reads x, y, w, h in this order, getAdPlayer nothing', (t) => {
  const read = [];
  const bounds = {};
  ['h', 'w', 'y', 'x'].forEach((name) => {
    Object.defineProperty(bounds, name, { get: () => read.push(name) });
  });
  return make('getPlayer', 'url', bounds)
    .then(() => {
      t.deepEqual(read, ['x', 'y', 'w', 'h']);
      return make('getAdPlayer', 'url', bounds);
    })
    .then(() => t.equal(read.length, 4));
});

test('getAdPlayer takes any rectangle but undefined', (t) => {
  recorder.reset();
  const bounds = [null, 0, '', false, {}];
  return Promise.all(bounds.map((each) => make('getAdPlayer', 'url', each))).then((outcomes) => {
    t.ok(outcomes.every((outcome) => outcome.result instanceof quiravent.adPlayer));
    t.deepEqual(
      recorder.sequence(),
      bounds.map(() => ['pl_media_CreateAdPlayer', 'url', 'out'])
    );
  });
});

test('each call makes another player', (t) => {
  recorder.reset();
  const jobs = [make('getPlayer', 'a', {}), make('getPlayer', 'a', {})];
  return Promise.all(jobs).then((outcomes) => {
    const players = outcomes.map((outcome) => outcome.result);
    t.notEqual(players[0], players[1]);
    t.notEqual(handleOf(players[0]), handleOf(players[1]));
  });
});

test('jobs wait while open workers take all threads of the pool', (t) => {
  const source = `
    process.env.UV_THREADPOOL_SIZE = '1';
    const complete = () => say('complete ');
    const tuner = new quiravent.TunerWorker('a', 'b', () => {}, complete, () => {});
    recorder.waitForCalls('pl_dtv_Action_selectTransportStream')
      .then(() => support('threads').quiet())
      .then(() => {
        quiravent.mediaServices.getPlayer('url', {}, () => say('player'));
        return support('threads').quiet();
      })
      .then(() => {
        say(recorder.calls('pl_media_CreateUrlPlayer').length + ' ');
        tuner.closeTuner();
      });`;
  return says(t, source, '0 complete player');
});
