'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { keep, load } = require('./support/graphics');
const { collect } = require('./support/collection');
const { runScript } = require('./support/process');

const services = quiravent.graphicServices;

// First of all, since the target is made once in a process.
test('the target is made on first demand, and asked for again only when that failed', (t) => {
  const fn = 'pl_gfx_GetTargetCanvas';
  recorder.clear();
  recorder.once(fn, { status: 4 });
  t.equal(services.getTargetCanvas(), undefined);
  t.equal(recorder.calls(fn).length, 1);
  const first = keep(services.getTargetCanvas());
  t.ok(first instanceof quiravent.canvas);
  t.equal(recorder.calls(fn).length, 2);
  const second = services.getTargetCanvas();
  t.notEqual(first, second);
  t.equal(recorder.calls(fn).length, 2);
  t.deepEqual(recorder.calls('pl_gfx_Canvas_GetSize'), [], 'the size of the screen isn’t asked');
  t.ok(recorder.calls().every((call) => call.thread === 'script'));
  t.end();
});

test('a released target stays released', (t) => {
  const source = `
    const services = quiravent.graphicServices;
    const target = services.getTargetCanvas();
    target.release();
    recorder.clear();
    const next = services.getTargetCanvas();
    next.fillRect(1, 2, 3, 4);
    const result = [target.isInvalid(), next.isInvalid(), next.getSize(), recorder.sequence()];
    say(JSON.stringify(result));`;
  return runScript(source).then((result) => {
    t.equal(result.code, 0, result.stderr);
    t.deepEqual(JSON.parse(result.stdout), [true, true, { w: 0, h: 0 }, []]);
  });
});

test('createCanvas makes an off-screen canvas, or gives undefined', (t) => {
  const fn = 'pl_gfx_CreateCanvas';
  // [arguments, size that arrives, or null where none is asked for]
  const rows = [
    [
      [3, 4],
      [3, 4]
    ],
    [
      ['5', 6.9],
      [5, 6]
    ],
    [
      [1, -1],
      [1, 4294967295]
    ],
    [[], null],
    [[5], null],
    [[0, 5], null],
    [[NaN, 5], null],
    [[{}, 5], null],
    [[65536, 65536], null],
    [[4294967296, 5], null]
  ];
  rows.forEach((row) => {
    recorder.clear();
    const canvas = keep(services.createCanvas.apply(services, row[0]));
    t.equal(canvas instanceof quiravent.canvas, row[1] !== null, JSON.stringify(row[0]));
    if (!row[1]) t.equal(canvas, undefined);
    const expected = row[1] ? [[fn].concat(row[1], 'out')] : [];
    t.deepEqual(recorder.sequence(), expected);
  });
  recorder.once(fn, { status: 4, outputs: { handle: 7 } });
  t.equal(services.createCanvas(2, 2), undefined, 'refused, although a handle was written');
  t.end();
});

test('a canvas whose handle the porting layer left out is an invalid one', (t) => {
  recorder.once('pl_gfx_CreateCanvas', { status: 0, outputs: { handle: null } });
  const canvas = services.createCanvas(2, 2);
  recorder.clear();
  t.equal(canvas.isInvalid(), true);
  canvas.fillRect(1, 2, 3, 4);
  canvas.release();
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('getVRAMStats gives signed figures, zeros only for one status', (t) => {
  const fn = 'pl_gfx_GetVRAMStats';
  const outputs = { used: 5, free: -2 };
  const zeros = { used: 0, free: 0 };
  const rows = [
    [{ status: 0, outputs }, outputs],
    [{ status: 1, outputs }, outputs],
    [{ status: -1, outputs }, outputs],
    [{ status: 0xffff, outputs }, zeros],
    [{ status: 0, outputs: { used: null, free: null } }, zeros]
  ];
  rows.forEach((row) => {
    recorder.clear();
    recorder.once(fn, row[0]);
    const stats = services.getVRAMStats();
    t.deepEqual(stats, row[1], JSON.stringify(row[0]));
    t.deepEqual(Object.keys(stats), ['used', 'free']);
    t.deepEqual(recorder.sequence(), [[fn, 'out']]);
  });
  t.end();
});

test('cleanUp leaves everything as it is', (t) => {
  const canvas = keep(services.createCanvas(2, 2));
  recorder.clear();
  t.equal(services.cleanUp(), undefined);
  t.deepEqual(recorder.calls(), []);
  canvas.fillRect(1, 1, 1, 1);
  t.equal(canvas.isInvalid(), false);
  t.equal(recorder.calls().length, 1);
  t.end();
});

function thrownBy(name, args) {
  try {
    services[name].apply(services, args);
  } catch (error) {
    return error;
  }
  return null;
}

const NO_IMAGE = 'loadImage() error. I believe that you need to choose a real image.';
const NO_FONT = 'loadFont() error. I believe that you need to choose a real font.';
const NO_SIZE = 'loadFont() error. You must use an integer value (>0).';
const NO_CALLBACK = 'You must write a callback. If you have questions: ';
const callback = () => {};

// [function, arguments, text or how it begins]: tests in their order, and the first that fails wins.
const BAD_ARGUMENTS = [
  ['loadImage', [], NO_IMAGE],
  ['loadImage', [undefined, callback], NO_IMAGE],
  ['loadImage', [null, callback], NO_IMAGE],
  ['loadImage', [5, callback], NO_IMAGE],
  ['loadImage', [{}, callback], NO_IMAGE],
  ['loadImage', [new String('path'), callback], NO_IMAGE],
  ['loadImage', ['path'], `loadImage() error. ${NO_CALLBACK}`],
  ['loadImage', ['path', undefined], `loadImage() error. ${NO_CALLBACK}`],
  ['loadFont', [], NO_FONT],
  ['loadFont', [undefined, 5, callback], NO_FONT],
  ['loadFont', [5, 5, callback], NO_FONT],
  ['loadFont', [null, 5, callback], NO_FONT],
  ['loadFont', ['path'], NO_FONT],
  ['loadFont', ['path', undefined, callback], NO_FONT],
  ['loadFont', ['path', '12', callback], NO_FONT],
  ['loadFont', ['path', null, callback], NO_FONT],
  ['loadFont', ['path', new Number(12), callback], NO_FONT],
  ['loadFont', ['path', '12'], NO_FONT],
  ['loadFont', ['path', 12], `loadFont() error. ${NO_CALLBACK}`],
  ['loadFont', ['path', 12, undefined], `loadFont() error. ${NO_CALLBACK}`],
  ['loadFont', ['path', 0], `loadFont() error. ${NO_CALLBACK}`],
  ['loadFont', ['path', 0, callback], NO_SIZE],
  ['loadFont', ['path', 0.9, callback], NO_SIZE],
  ['loadFont', ['path', -0.9, callback], NO_SIZE],
  ['loadFont', ['path', 4294967296, callback], NO_SIZE],
  ['loadFont', ['path', NaN, callback], NO_SIZE],
  ['loadFont', ['path', Infinity, callback], NO_SIZE]
];

test('a wrong argument of a loading function is a TypeError, and no job', (t) => {
  recorder.clear();
  BAD_ARGUMENTS.forEach((row) => {
    const error = thrownBy(row[0], row[1]);
    t.ok(error instanceof TypeError, row[0]);
    if (row[2].endsWith(NO_CALLBACK)) {
      t.ok(error.message.startsWith(row[2]), error.message);
      t.ok(/\S\.$/.test(error.message.slice(row[2].length)), 'a link and a full stop');
    } else {
      t.equal(error.message, row[2]);
    }
  });
  return collect().then(() => t.deepEqual(recorder.calls(), []));
});

test('an image is loaded on a pool thread, at its size', (t) => {
  recorder.reset();
  recorder.once('pl_gfx_Canvas_GetSize', { outputs: { w: 3, h: 4 } });
  return load('loadImage', 'päth/to image').then((outcome) => {
    t.equal(outcome.error, null);
    t.ok(outcome.result instanceof quiravent.canvas);
    const calls = recorder.calls();
    const handle = calls[1].args[0];
    t.deepEqual(
      calls.map((call) => [call.fn, call.args[0], call.thread]),
      [
        ['pl_gfx_LoadImage', 'päth/to image', 'pool'],
        ['pl_gfx_Canvas_GetSize', handle, 'pool']
      ]
    );
    recorder.clear();
    outcome.result.fillRect(1, 2, 3, 4);
    t.equal(recorder.calls()[0].args[0], handle);
  });
});

const HALF_LOADED = [
  ['no handle', { LoadImage: { status: 0, outputs: { handle: null } } }, 1],
  ['no handle and a failure', { LoadImage: { status: 5 } }, 1],
  ['a handle of 0', { LoadImage: { status: 0, outputs: { handle: 0 } } }, 1],
  ['no size', { Canvas_GetSize: { status: 1, outputs: { w: 5, h: 5 } } }, 2],
  ['no width', { Canvas_GetSize: { outputs: { w: 0, h: 5 } } }, 2],
  ['no height', { Canvas_GetSize: { outputs: { w: 5, h: 0 } } }, 2],
  ['a size beyond all', { Canvas_GetSize: { outputs: { w: 65536, h: 65536 } } }, 2]
];

HALF_LOADED.forEach((row) => {
  test(`an image is not loaded: ${row[0]}`, (t) => {
    recorder.reset();
    Object.keys(row[1]).forEach((name) => recorder.once(`pl_gfx_${name}`, row[1][name]));
    return load('loadImage', 'path').then((outcome) => {
      checkError(t, outcome, 'Error on loading image');
      t.equal(recorder.calls().length, row[2], 'and what was loaded is not released');
    });
  });
});

/** The error is a plain object with nothing but its text. */
function checkError(t, outcome, text) {
  t.equal(outcome.result, null);
  t.deepEqual(outcome.error, { message: text });
  t.equal(Object.getPrototypeOf(outcome.error), Object.prototype);
  t.deepEqual(Object.keys(outcome.error), ['message']);
}

test('a handle makes an image whatever the status', (t) => {
  recorder.reset();
  recorder.once('pl_gfx_LoadImage', { status: 9, outputs: { handle: 4711 } });
  recorder.once('pl_gfx_Canvas_GetSize', { status: 0, outputs: { w: 1, h: 1 } });
  return load('loadImage', 'path').then((outcome) => {
    t.equal(outcome.error, null);
    recorder.clear();
    outcome.result.fillRect(1, 2, 3, 4);
    t.equal(recorder.argsOf('pl_gfx_Canvas_FillRect')[0][0], 4711);
  });
});

test('a font that is refused comes as an error', (t) => {
  recorder.reset();
  recorder.once('pl_gfx_LoadFont', { status: 5, outputs: { handle: 4712 } });
  return load('loadFont', 'path', 12)
    .then((outcome) => checkError(t, outcome, 'Error on loading font'))
    .then(() => collect())
    .then(() => t.equal(recorder.calls().length, 1, 'nothing is released'));
});

test('a loading function returns undefined at once and calls back once, later', (t) => {
  let calls = 0;
  const done = new Promise((resolve) => {
    const callback = function () {
      calls += 1;
      resolve(arguments.length);
    };
    t.equal(services.loadImage('path', callback), undefined);
    t.equal(calls, 0);
  });
  return done.then((count) => {
    t.equal(count, 2);
    return collect().then(() => t.equal(calls, 1));
  });
});

test('the receiver of a callback is the global object', (t) => {
  const source = `
    const globalObject = new Function('return this;')();
    quiravent.graphicServices.loadFont('path', 5, function () {
      'use strict';
      say(String(this === globalObject));
    });`;
  return runScript(source).then((result) => t.equal(result.stdout, 'true', result.stderr));
});

test('jobs call back in the order in which they finish', (t) => {
  recorder.reset();
  const order = [];
  const held = recorder.hold('pl_gfx_LoadImage');
  const first = load('loadImage', 'first').then(() => order.push('first'));
  return held.blocked().then(() => {
    const second = load('loadImage', 'second').then(() => {
      order.push('second');
      held.open();
    });
    return Promise.all([first, second]).then(() => t.deepEqual(order, ['second', 'first']));
  });
});

test('the script thread goes on while jobs run', (t) => {
  recorder.reset();
  const held = recorder.hold('pl_gfx_LoadFont');
  const loaded = load('loadFont', 'path', 12);
  return held.blocked().then(() => {
    const canvas = keep(services.createCanvas(2, 2));
    canvas.fillRect(1, 2, 3, 4);
    t.equal(recorder.calls('pl_gfx_Canvas_FillRect').length, 1);
    held.open();
    return loaded;
  });
});

test('what is no function as callback is noticed when it is called', (t) => {
  const source = `
    process.once('uncaughtException', (error) => say(error.name + ' '));
    quiravent.graphicServices.loadImage('path', 5);
    recorder.waitForCalls('pl_gfx_Canvas_GetSize').then(() => say('queued '));`;
  return runScript(source).then((result) => {
    t.equal(result.code, 0, result.stderr);
    t.ok(/queued/.test(result.stdout), 'nothing was thrown at first');
    t.ok(/TypeError/.test(result.stdout));
  });
});

test('an exception of a callback is the application’s own', (t) => {
  const source = `
    process.once('uncaughtException', (error) => say(error.message));
    quiravent.graphicServices.loadImage('path', () => { throw new Error('mine'); });`;
  return runScript(source).then((result) => {
    t.equal(result.code, 0, result.stderr);
    t.equal(result.stdout, 'mine');
  });
});
