'use strict';

// The four functions that make an object on a pool thread and then call back.

const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { keep, newCanvas } = require('./support/graphics');
const { collect } = require('./support/collection');
const { quiet } = require('./support/threads');
const { uncaughtBy } = require('./support/uncaught');

const { graphicServices, mediaServices } = quiravent;
const callback = () => {};

const NO_CALLBACK = 'You must write a callback. If you have questions: ';
const NO_IMAGE = 'loadImage() error. I believe that you need to choose a real image.';
const NO_FONT = 'loadFont() error. I believe that you need to choose a real font.';
const NO_SIZE = 'loadFont() error. You must use an integer value (>0).';
const NO_URL = 'getPlayer() error. I believe that you need to choose a real video url.';
const NO_BOUNDS = 'getPlayer() error. You must write configure a rectangle.';

// [arguments, text or how it begins]: tests in their order, and the first that fails wins.
const BAD_PLAYERS = [
  [[], NO_URL],
  [[undefined, {}, callback], NO_URL],
  [[5, {}, callback], NO_URL],
  [[null, {}, callback], NO_URL],
  [[new String('url'), {}, callback], NO_URL],
  [[{}], NO_URL],
  [['url'], NO_BOUNDS],
  [['url', undefined, callback], NO_BOUNDS],
  [['url', undefined], NO_BOUNDS],
  [['url', {}], `getPlayer() error. ${NO_CALLBACK}`],
  [['', {}, undefined], `getPlayer() error. ${NO_CALLBACK}`],
  [['url', 0], `getPlayer() error. ${NO_CALLBACK}`],
  [['url', null], `getPlayer() error. ${NO_CALLBACK}`]
];

/** A player that is refused: [how functions answer, calls that there are]. */
const refusedPlayers = (create) =>
  [
    { status: 1 },
    { status: 2, outputs: { handle: 5 } },
    { status: -1, outputs: { handle: 5 } },
    { status: 65535, outputs: { handle: 5 } },
    { status: 0, outputs: { handle: 0 } },
    { status: 0, outputs: { handle: null } }
  ].map((behaviour) => [{ [create]: behaviour }, 1]);

const IMAGE = 'pl_gfx_LoadImage';
const SIZE = 'pl_gfx_Canvas_GetSize';

/**
 * By name: the arguments but for the callback; the functions that are called in this order; what
 * makes a call of another one with the handle; the text of a failure, and how it comes about; the
 * arguments that are refused.
 */
const JOBS = {
  loadImage: {
    services: graphicServices,
    Class: quiravent.canvas,
    args: ['path'],
    calls: [IMAGE, SIZE],
    use: (image) => image.fillRect(1, 2, 3, 4),
    failure: 'Error on loading image',
    failures: [
      [{ [IMAGE]: { status: 0, outputs: { handle: null } } }, 1],
      [{ [IMAGE]: { status: 5 } }, 1],
      [{ [IMAGE]: { status: 0, outputs: { handle: 0 } } }, 1],
      [{ [SIZE]: { status: 1, outputs: { w: 5, h: 5 } } }, 2],
      [{ [SIZE]: { outputs: { w: 0, h: 5 } } }, 2],
      [{ [SIZE]: { outputs: { w: 5, h: 0 } } }, 2],
      [{ [SIZE]: { outputs: { w: 65536, h: 65536 } } }, 2]
    ],
    bad: [
      [[], NO_IMAGE],
      [[undefined, callback], NO_IMAGE],
      [[null, callback], NO_IMAGE],
      [[5, callback], NO_IMAGE],
      [[{}, callback], NO_IMAGE],
      [[new String('path'), callback], NO_IMAGE],
      [['path'], `loadImage() error. ${NO_CALLBACK}`],
      [['path', undefined], `loadImage() error. ${NO_CALLBACK}`]
    ]
  },
  loadFont: {
    services: graphicServices,
    Class: quiravent.font,
    args: ['path', 12],
    calls: ['pl_gfx_LoadFont'],
    use: (font) => newCanvas().canvas.setFont(font),
    failure: 'Error on loading font',
    failures: [[{ pl_gfx_LoadFont: { status: 5, outputs: { handle: 4712 } } }, 1]],
    bad: [
      [[], NO_FONT],
      [[undefined, 5, callback], NO_FONT],
      [[5, 5, callback], NO_FONT],
      [[null, 5, callback], NO_FONT],
      [['path'], NO_FONT],
      [['path', undefined, callback], NO_FONT],
      [['path', '12', callback], NO_FONT],
      [['path', null, callback], NO_FONT],
      [['path', new Number(12), callback], NO_FONT],
      [['path', '12'], NO_FONT],
      [['path', 12], `loadFont() error. ${NO_CALLBACK}`],
      [['path', 12, undefined], `loadFont() error. ${NO_CALLBACK}`],
      [['path', 0], `loadFont() error. ${NO_CALLBACK}`]
    ].concat(
      [0, 0.9, -0.9, 4294967296, NaN, Infinity].map((size) => [['path', size, callback], NO_SIZE])
    )
  },
  getPlayer: {
    services: mediaServices,
    Class: quiravent.mediaPlayer,
    args: ['url', {}],
    calls: ['pl_media_CreateUrlPlayer'],
    use: (player) => player.start(),
    failure: 'Error on getPlayer',
    failures: refusedPlayers('pl_media_CreateUrlPlayer'),
    bad: BAD_PLAYERS
  },
  getAdPlayer: {
    services: mediaServices,
    Class: quiravent.adPlayer,
    args: ['url', {}],
    calls: ['pl_media_CreateAdPlayer'],
    use: (player) => player.start(),
    failure: 'ERROR',
    failures: refusedPlayers('pl_media_CreateAdPlayer'),
    bad: BAD_PLAYERS
  }
};

Object.keys(JOBS).forEach((name) => {
  const job = JOBS[name];
  const { services, calls } = job;

  /** Resolves with { error, result, count: of arguments, calls: so far, of the callback }. */
  const begin = (text) =>
    new Promise((resolve) => {
      const outcome = { calls: 0 };
      const onDone = function (error, result) {
        outcome.calls += 1;
        resolve(Object.assign(outcome, { error, result: keep(result), count: arguments.length }));
      };
      const args = [text].concat(job.args.slice(1), onDone);
      const returned = services[name].apply(services, args);
      if (returned !== undefined || outcome.calls > 0) throw new Error(`${name} gave a result`);
    });

  test(`${name} refuses by TypeErrors, and makes no job`, (t) => {
    recorder.reset();
    job.bad.forEach((row) => {
      const what = JSON.stringify(row[0]);
      try {
        services[name].apply(services, row[0]);
        t.fail(what);
      } catch (error) {
        t.equal(error.constructor, TypeError, what);
        t.equal(error.message.slice(0, row[1].length), row[1], what);
        const link = error.message.slice(row[1].length);
        t.ok(row[1].endsWith(NO_CALLBACK) ? /\S\.$/.test(link) : link === '', `then: ${link}`);
      }
    });
    return quiet().then(() => t.deepEqual(recorder.calls(), []));
  });

  test(`${name} makes an object on a pool thread, and calls back once`, (t) => {
    const handle = 4294967295;
    recorder.reset();
    recorder.once(calls[0], { outputs: { handle } });
    recorder.once(SIZE, { status: 0, outputs: { w: 3, h: 4 } });
    return begin('http://ä/ b').then((outcome) => {
      t.equal(outcome.error, null);
      t.equal(outcome.count, 2);
      t.ok(outcome.result instanceof job.Class);
      t.deepEqual(Object.getOwnPropertyNames(outcome.result), []);
      t.deepEqual(
        recorder.calls().map((call) => [call.fn, call.args[0], call.thread]),
        calls.map((fn, index) => [fn, index ? handle : 'http://ä/ b', 'pool'])
      );
      recorder.reset();
      job.use(outcome.result);
      t.ok(recorder.calls().pop().args.indexOf(handle) >= 0, 'with its handle');
      return collect().then(() => t.equal(outcome.calls, 1));
    });
  });

  test(`${name} tells of a failure by one text`, (t) => {
    let expected = 0;
    recorder.reset();
    const check = (row) => {
      expected += row[1];
      Object.keys(row[0]).forEach((fn) => recorder.once(fn, row[0][fn]));
      return begin('path').then((outcome) => {
        const what = JSON.stringify(row[0]);
        t.deepEqual([outcome.result, outcome.count], [null, 2], what);
        t.deepEqual(outcome.error, { message: job.failure });
        t.equal(Object.getPrototypeOf(outcome.error), Object.prototype);
        t.equal(recorder.calls().length, expected, 'no call follows the one that fails');
      });
    };
    return inSequence(job.failures, check)
      .then(() => collect())
      .then(() => t.equal(recorder.calls().length, expected, 'nothing is released or unloaded'));
  });

  test(`${name} calls back in the order in which jobs finish`, (t) => {
    recorder.reset();
    const order = [];
    const held = recorder.hold(calls[0]);
    const first = begin('first').then(() => order.push('first'));
    return held
      .blocked()
      .then(() => begin('second'))
      .then(() => {
        order.push('second');
        held.open();
        return first;
      })
      .then(() => t.deepEqual(order, ['second', 'first']));
  });

  test(`${name} ends its text at the first NUL`, (t) => {
    recorder.reset();
    return begin('ab\0cd').then(() => t.equal(recorder.argsOf(calls[0])[0][0], 'ab'));
  });

  test(`${name} notices a callback that is no function when it calls it`, (t) => {
    recorder.reset();
    return uncaughtBy(() => services[name].apply(services, job.args.concat(7))).then((error) => {
      t.equal(error.name, 'TypeError');
      t.deepEqual(
        recorder.calls().map((call) => call.fn),
        calls
      );
    });
  });

  test(`${name} leaves an exception of the callback to the application`, (t) => {
    const exception = new Error('mine');
    let receiver = null;
    const onDone = function () {
      receiver = this;
      throw exception;
    };
    return uncaughtBy(() => services[name].apply(services, job.args.concat(onDone))).then(
      (error) => {
        t.equal(error, exception);
        t.equal(receiver, global, 'whose receiver is the global object');
      }
    );
  });
});
