'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { newCanvas, newFont } = require('./support/graphics');
const { collect } = require('./support/collection');

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

test('a member of a namespace needs no receiver', (t) => {
  const createCanvas = services.createCanvas;
  t.ok(createCanvas(2, 2) instanceof quiravent.canvas);
  t.end();
});
