'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { PLAYERS } = require('./support/workers');
const { quiet } = require('./support/threads');
const { runScript } = require('./support/process');

const services = quiravent.mediaServices;
const KINDS = ['media', 'ad'].map((kind) => PLAYERS[kind]);
const CLASSES = { getPlayer: quiravent.mediaPlayer, getAdPlayer: quiravent.adPlayer };
const FAILURES = { getPlayer: 'Error on getPlayer', getAdPlayer: 'ERROR' };

/** Resolves with what the callback is given, as { error, result, count }. */
function make(name, url, bounds) {
  return new Promise((resolve) => {
    const callback = function (error, result) {
      resolve({ error, result, count: arguments.length });
    };
    const returned = services[name](url, bounds, callback);
    if (returned !== undefined) throw new Error(`${name} gave a result`);
  });
}

/** The handle that a player passes to the porting layer. */
function handleOf(player) {
  recorder.clear();
  player.start();
  return recorder.calls()[0].args[0];
}

const NO_URL = 'getPlayer() error. I believe that you need to choose a real video url.';
const NO_BOUNDS = 'getPlayer() error. You must write configure a rectangle.';
const NO_CALLBACK = 'getPlayer() error. You must write a callback. If you have questions: ';
const callback = () => {};

// [arguments, text or how it begins]: tests in their order, and the first that fails wins.
const BAD_ARGUMENTS = [
  [[], NO_URL],
  [[undefined, {}, callback], NO_URL],
  [[5, {}, callback], NO_URL],
  [[null, {}, callback], NO_URL],
  [[new String('url'), {}, callback], NO_URL],
  [[{}], NO_URL],
  [['url'], NO_BOUNDS],
  [['url', undefined, callback], NO_BOUNDS],
  [['url', undefined], NO_BOUNDS],
  [['url', {}], NO_CALLBACK],
  [['', {}, undefined], NO_CALLBACK],
  [['url', 0], NO_CALLBACK],
  [['url', null], NO_CALLBACK]
];

KINDS.forEach((kind) => {
  test(`${kind.make} refuses by TypeErrors that say getPlayer`, (t) => {
    recorder.reset();
    BAD_ARGUMENTS.forEach((row) => {
      const what = JSON.stringify(row[0]);
      try {
        services[kind.make].apply(services, row[0]);
        t.fail(what);
      } catch (error) {
        t.equal(error.constructor, TypeError, what);
        t.equal(error.message.slice(0, row[1].length), row[1], what);
        const link = error.message.slice(row[1].length);
        t.ok(row[1] === NO_CALLBACK ? /\S\.$/.test(link) : link === '', `then: ${link}`);
      }
    });
    return quiet().then(() => t.deepEqual(recorder.calls(), [], 'and there is no job'));
  });

  test(`${kind.make} makes a player on a pool thread`, (t) => {
    recorder.reset();
    recorder.once(kind.create, { outputs: { handle: 4294967295 } });
    return make(kind.make, 'http://ä/ b', {}).then((outcome) => {
      t.equal(outcome.error, null);
      t.equal(outcome.count, 2);
      t.ok(outcome.result instanceof CLASSES[kind.make]);
      t.deepEqual(Object.getOwnPropertyNames(outcome.result), []);
      const calls = recorder.calls();
      t.deepEqual(
        calls.map((call) => [call.fn, call.args[0], call.thread]),
        [[kind.create, 'http://ä/ b', 'pool']]
      );
      t.equal(handleOf(outcome.result), 4294967295);
    });
  });

  // [how the porting layer answers]
  const refusals = [
    { status: 1 },
    { status: 2, outputs: { handle: 5 } },
    { status: -1, outputs: { handle: 5 } },
    { status: 65535, outputs: { handle: 5 } },
    { status: 0, outputs: { handle: 0 } },
    { status: 0, outputs: { handle: null } }
  ];

  test(`${kind.make} tells of a failure by one text`, (t) => {
    recorder.reset();
    refusals.forEach((behaviour) => recorder.once(kind.create, behaviour));
    return Promise.all(refusals.map(() => make(kind.make, 'url', {}))).then((outcomes) => {
      outcomes.forEach((outcome) => {
        t.equal(outcome.result, null);
        t.equal(outcome.count, 2);
        t.deepEqual(outcome.error, { message: FAILURES[kind.make] });
        t.equal(Object.getPrototypeOf(outcome.error), Object.prototype);
      });
      t.equal(recorder.calls().length, refusals.length, 'nothing is unloaded');
    });
  });

  test(`${kind.make} calls back in the order in which jobs finish`, (t) => {
    recorder.reset();
    const order = [];
    const held = recorder.hold(kind.create);
    const first = make(kind.make, 'first', {}).then(() => order.push('first'));
    return held
      .blocked()
      .then(() => make(kind.make, 'second', {}))
      .then(() => {
        order.push('second');
        held.open();
        return first;
      })
      .then(() => t.deepEqual(order, ['second', 'first']));
  });

  test(`${kind.make} ends an url at its first NUL`, (t) => {
    recorder.reset();
    return make(kind.make, 'ab\0cd', {}).then(() => {
      t.equal(recorder.argsOf(kind.create)[0][0], 'ab');
    });
  });

  test(`${kind.make} notices a callback that is no function when it calls it`, (t) => {
    const source = `
      process.on('uncaughtException', (error) => say(error.name));
      quiravent.mediaServices.${kind.make}('url', {}, 7);
      recorder.waitForCalls('${kind.create}').then(() => say('made '));`;
    return runScript(source).then((result) => {
      t.equal(result.code, 0, result.stderr);
      t.ok(/made/.test(result.stdout) && /TypeError/.test(result.stdout), result.stdout);
    });
  });

  test(`${kind.make} leaves an exception of the callback to the application`, (t) => {
    const source = `
      process.on('uncaughtException', (error) => say(error.message));
      quiravent.mediaServices.${kind.make}('url', {}, () => { throw new Error('mine'); });`;
    return runScript(source).then((result) => {
      t.equal(result.code, 0, result.stderr);
      t.equal(result.stdout, 'mine');
    });
  });
});

const rect = (x, y, w, h) => ({ x, y, w, h });

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
  return BOUNDS.reduce((before, row) => before.then(() => check(row)), Promise.resolve());
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
  return runScript(source).then((result) => {
    t.equal(result.code, 0, result.stderr);
    t.equal(result.stdout, '0 complete player');
  });
});
