'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { keep, load } = require('./support/graphics');
const { says } = require('./support/process');
const { row } = require('./support/rows');

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
  return says(t, source, '[true,true,{"w":0,"h":0},[]]');
});

test('createCanvas makes an off-screen canvas, or gives undefined', (t) => {
  const fn = 'pl_gfx_CreateCanvas';
  // [arguments, size that arrives, or null where none is asked for]
  const rows = [
    row([3, 4], [3, 4]),
    row(['5', 6.9], [5, 6]),
    row([1, -1], [1, 4294967295]),
    row([], null),
    row([5], null),
    row([0, 5], null),
    row([NaN, 5], null),
    row([{}, 5], null),
    row([65536, 65536], null),
    row([4294967296, 5], null)
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
