'use strict';

// Calls everything that the module exports with values of every kind, over the recorder:
//
//   node --expose-gc test/fuzz/arguments/run.js CALLS SEED
//
// The loader has to know the recorder, as test/run-tap.js sees to. The last line of standard output
// tells as JSON what was done; anything but exit status 0 is a fault.

// Every open worker occupies a thread of the runtime's pool, which is made at its first use.
process.env.UV_THREADPOOL_SIZE = '300';

const quiravent = require('../../script/support/module');
const recorder = require('../../script/support/recorder');
const { generator, pick } = require('../../script/support/random');
const { Calls } = require('./calls');

const BATCH = 200;

/** Only a service selector can end what waits for it, so its channel comes into play late. */
const CHANNEL_FROM = 0.9;

const wanted = Number(process.argv[2]);
const next = generator(Number(process.argv[3]));
const calls = new Calls(next);
let uncaught = 0;

// What listeners and callbacks throw is the application's own.
process.on('uncaughtException', (error) => {
  uncaught += 1;
  calls.noteThrown(error);
});

function made() {
  return Object.keys(calls.made).reduce((sum, name) => sum + calls.made[name], 0);
}

/** The first objects of each class, and the first worker of each kind of player. */
function begin() {
  const { graphicServices, mediaServices, dataServices, tunerServices } = quiravent;
  const loaded = (load) =>
    new Promise((resolve) => load((error, result) => resolve(calls.keep(result))));
  calls.keep(graphicServices.getTargetCanvas());
  calls.keep(dataServices.getPersistent('context'));
  calls.keep(tunerServices.getPlayer(1, 2, 3));
  return Promise.all([
    loaded((keep) => graphicServices.loadFont('font', 20, keep)),
    loaded((keep) => mediaServices.getPlayer('url', {}, keep)),
    loaded((keep) => mediaServices.getAdPlayer('url', {}, keep))
  ]).then(() => {
    ['mediaPlayer', 'adPlayer'].forEach((name) => {
      const ignore = () => {};
      calls.natives[name][0].registerListener(ignore, ignore, ignore);
    });
  });
}

function randomEvent() {
  return pick(next, [
    () => recorder.event('keyPress', next() | 0),
    () => recorder.event('keyRelease', next() % 500),
    () => recorder.event('media', 1, next() % 12, next() % 256),
    () => recorder.event('ad', 1, next() % 12, next() % 256),
    () => recorder.event('dtv', next() % 12),
    () => recorder.event('runtimeState', next() % 9)
  ])();
}

function batch() {
  recorder.clear();
  calls.channelAllowed = made() > wanted * CHANNEL_FROM;
  for (let count = 0; count < BATCH; count += 1) {
    if (next() % 10 === 0) calls.prepareAnswer();
    calls.one();
  }
  if (next() % 20 === 0) global.gc();
}

function goOn() {
  batch();
  return recorder
    .fire([randomEvent(), randomEvent()], 'device')
    .then(() => new Promise((resolve) => setImmediate(resolve)))
    .then(() => (made() < wanted ? goOn() : undefined));
}

/** What still works: a new canvas draws. */
function check() {
  recorder.reset();
  const canvas = quiravent.graphicServices.createCanvas(4, 2);
  canvas.fillRect(1, 1, 1, 1);
  return recorder.calls('pl_gfx_Canvas_FillRect').length === 1;
}

function tell(works) {
  const summary = {
    calls: made(),
    functions: Object.keys(calls.made).length,
    uncalled: calls.functions.map((each) => each.name).filter((name) => !calls.made[name]),
    avoided: calls.avoided,
    thrown: calls.thrown,
    uncaught,
    works
  };
  process.stdout.write(`${JSON.stringify(summary)}\n`, () => process.exit(works ? 0 : 1));
}

begin()
  .then(goOn)
  .then(() => tell(check()))
  .catch((error) => {
    process.stderr.write(`${error.stack}\n`);
    process.exit(1);
  });
