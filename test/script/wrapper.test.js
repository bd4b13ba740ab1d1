'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { newCanvas, newFont } = require('./support/graphics');
const { collect } = require('./support/collection');
const { runScript } = require('./support/process');

const services = quiravent.graphicServices;
const CLASSES = ['font', 'canvas', 'mediaPlayer', 'adPlayer', 'persistent', 'dtvplayer'];

test('a constructor called by a script gives an object without a native side', (t) => {
  recorder.clear();
  CLASSES.forEach((name) => {
    const Class = quiravent[name];
    [new Class(), Class(), Class(1, 2), new Class(undefined)].forEach((object) => {
      t.ok(object instanceof Class, name);
      t.deepEqual(Object.getOwnPropertyNames(object), [], name);
    });
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('objects without a native side can be collected', (t) => {
  for (let count = 0; count < 100; count += 1) CLASSES.forEach((name) => quiravent[name]());
  return collect().then(() => t.pass('nothing to be freed was missed'));
});

test('script objects have no properties of their own, and take those that a script adds', (t) => {
  const objects = [newCanvas().canvas, quiravent.dataServices.getPersistent('a')];
  objects.forEach((object) => {
    t.deepEqual(Object.getOwnPropertyNames(object), []);
    object.note = 'mine';
    t.equal(object.note, 'mine');
    t.deepEqual(Object.keys(object), ['note']);
  });
  return newFont().then((font) => {
    t.ok(font instanceof quiravent.font);
    t.deepEqual(Object.getOwnPropertyNames(font), []);
  });
});

test('a method refuses a foreign receiver before anything runs', (t) => {
  const canvas = newCanvas().canvas;
  const store = quiravent.dataServices.getPersistent('a');
  recorder.clear();
  const receivers = [{}, undefined, 5, quiravent.canvas.prototype, Object.create(canvas), store];
  receivers.forEach((receiver) => {
    t.throws(() => canvas.fillRect.call(receiver, 1, 2, 3, 4), TypeError);
  });
  [{}, canvas].forEach((receiver) => t.throws(() => store.set.call(receiver, 'a', 1), TypeError));
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('so does every method of every class', (t) => {
  CLASSES.concat('InputWorker', 'TunerWorker').forEach((name) => {
    const prototype = quiravent[name].prototype;
    Object.keys(prototype).forEach((method) => {
      t.throws(() => prototype[method].call({}), TypeError, `${name}.${method}`);
    });
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('each hand-out of the target is another object over the same canvas', (t) => {
  const first = services.getTargetCanvas();
  let second = services.getTargetCanvas();
  t.notEqual(first, second);
  recorder.clear();
  first.setColor('red');
  second.setColor('red');
  t.equal(recorder.calls('pl_gfx_Canvas_SetColor').length, 1, 'they share what was set');
  second = null;
  return collect().then(() => {
    recorder.clear();
    t.equal(first.isInvalid(), false);
    first.fillRect(1, 2, 3, 4);
    t.equal(recorder.calls('pl_gfx_Canvas_FillRect').length, 1);
  });
});

test('a member of a namespace needs no receiver', (t) => {
  const createCanvas = services.createCanvas;
  t.ok(createCanvas(2, 2) instanceof quiravent.canvas);
  t.end();
});

// Each ends its process, by the signal named.
const HARD_ENDS = [
  ['a canvas method without a native side', 'quiravent.canvas().getSize()', 'SIGSEGV'],
  ['the same, made with new', 'new quiravent.canvas().isInvalid()', 'SIGSEGV'],
  ['releasing without a native side', 'new quiravent.canvas().release()', 'SIGSEGV'],
  ['a store method without a native side', 'new quiravent.persistent().get("a")', 'SIGSEGV'],
  ['the same, whatever the key', 'quiravent.persistent().set(1, "x")', 'SIGSEGV'],
  ['the same, without a key', 'quiravent.persistent().getAll()', 'SIGSEGV'],
  ['a player method without a native side', 'quiravent.mediaPlayer().fetch()', 'SIGSEGV'],
  ['the same, of an ad player', 'new quiravent.adPlayer().getTime()', 'SIGSEGV'],
  ['the same, of a live player', 'new quiravent.dtvplayer().release()', 'SIGSEGV'],
  ['a font without a native side', 'canvas.setFont(quiravent.font())', 'SIGSEGV'],
  ['a source without a native side', 'canvas.compose(quiravent.canvas(), 0, 0)', 'SIGSEGV'],
  ['a plain object as font', 'canvas.setFont({})', 'SIGABRT'],
  ['a number as font', 'canvas.setFont(5)', 'SIGABRT'],
  ['a text as font', 'canvas.setFont("font")', 'SIGABRT'],
  ['a plain object as source', 'canvas.compose({}, 0, 0)', 'SIGABRT'],
  ['a boolean as source', 'canvas.compose(true, 0, 0)', 'SIGABRT'],
  ['a plain object as scaled source', 'canvas.composeScaled({})', 'SIGABRT'],
  ['null as part to compose', 'canvas.compose(canvas, 0, 0, null)', 'SIGSEGV'],
  ['null as destination', 'canvas.composeScaled(canvas, null)', 'SIGSEGV'],
  ['null as part to scale', 'canvas.composeScaled(canvas, undefined, null)', 'SIGSEGV']
];

HARD_ENDS.forEach((row) => {
  test(`fatal: ${row[0]}`, (t) => {
    const source = `
      const canvas = quiravent.graphicServices.createCanvas(8, 8);
      recorder.echo();
      say('begin\\n');
      ${row[1]};
      say('survived');`;
    return runScript(source).then((result) => {
      t.equal(result.signal, row[2]);
      const calls = result.stdout.split('\n').filter((line) => line.indexOf('GetSize') < 0);
      t.deepEqual(calls, ['begin', ''], 'nothing was drawn or set');
    });
  });
});
