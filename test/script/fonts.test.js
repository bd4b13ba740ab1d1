'use strict';

const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const recorder = require('./support/recorder');
const { keep, newCanvas, newUnkeptCanvas, load, loadUnkept } = require('./support/graphics');
const { collect, released } = require('./support/collection');

const FONT = 'pl_gfx_ReleaseFont';

/** Loads fonts; resolves with [{ font, handle }]. */
function loadFonts(count) {
  const loads = [];
  for (let index = 0; index < count; index += 1) loads.push(loadUnkept('loadFont', `${index}`, 20));
  return Promise.all(loads).then((outcomes) => {
    const probe = newCanvas().canvas;
    return outcomes.map((outcome) => {
      recorder.clear();
      probe.setFont(outcome.result);
      const handle = recorder.argsOf('pl_gfx_Canvas_SetFont')[0][1];
      return { font: outcome.result, handle };
    });
  });
}

const isBound = (canvas) => canvas.measureText('a').width > 0;

test('a size arrives as one byte', (t) => {
  const rows = [
    [1, 1],
    [1.5, 1],
    [255, 255],
    [256, 0],
    [300, 44],
    [4294967297, 1],
    [-1, 255]
  ];
  recorder.clear();
  return inSequence(rows, (row) => load('loadFont', 'path', row[0])).then(() => {
    const calls = recorder.calls();
    t.ok(calls.every((call) => call.fn === 'pl_gfx_LoadFont' && call.thread === 'pool'));
    t.deepEqual(
      calls.map((call) => call.args),
      rows.map((row) => ['path', row[1], 'out'])
    );
  });
});

test('a dropped font is released once, and unbinds every canvas', (t) => {
  const first = newCanvas().canvas;
  const second = newCanvas().canvas;
  return loadFonts(2)
    .then((fonts) => {
      first.setFont(fonts[0].font);
      second.setFont(fonts[1].font);
      t.ok(isBound(first) && isBound(second));
      recorder.clear();
      const kept = keep(fonts[1]);
      const dropped = fonts[0].handle;
      fonts.length = 0;
      return collect(() => released(FONT).length > 0).then(() => ({ kept, dropped }));
    })
    .then((fonts) => {
      t.deepEqual(released(FONT), [fonts.dropped]);
      t.ok(recorder.calls(FONT).every((call) => call.thread === 'script'));
      t.deepEqual(recorder.calls('pl_gfx_Canvas_SetFont'), [], 'the porting layer isn’t told');
      t.notOk(isBound(first), 'the canvas of the font');
      t.notOk(isBound(second), 'the canvas of another font');
      recorder.clear();
      second.setFont(fonts.kept.font);
      t.deepEqual(
        recorder.argsOf('pl_gfx_Canvas_SetFont').map((args) => args[1]),
        [fonts.kept.handle],
        'the other font can be bound again'
      );
      t.ok(isBound(second));
      return collect().then(() => t.deepEqual(released(FONT), []));
    });
});

test('a canvas keeps no font alive', (t) => {
  const { canvas } = newCanvas();
  return loadUnkept('loadFont', 'path', 20).then((outcome) => {
    canvas.setFont(outcome.result);
    outcome.result = null;
    recorder.clear();
    return collect(() => released(FONT).length > 0).then((gone) => {
      t.ok(gone);
      t.notOk(isBound(canvas));
    });
  });
});

test('a released canvas is no hindrance to the end of its font', (t) => {
  const { canvas } = newCanvas();
  return loadFonts(1).then((fonts) => {
    canvas.setFont(fonts[0].font);
    canvas.release();
    const handle = fonts[0].handle;
    fonts.length = 0;
    recorder.clear();
    return collect(() => released(FONT).length > 0).then(() =>
      t.deepEqual(released(FONT), [handle])
    );
  });
});

test('fonts and their canvases may end together', (t) => {
  const handles = [];
  return loadFonts(20)
    .then((fonts) => {
      fonts.forEach((entry) => {
        newUnkeptCanvas().canvas.setFont(entry.font);
        newUnkeptCanvas().canvas.setFont(entry.font);
        handles.push(entry.handle);
      });
      fonts.length = 0;
      recorder.clear();
      return collect(() => released(FONT).length >= handles.length);
    })
    .then(() => collect())
    .then(() => {
      t.deepEqual(
        released(FONT),
        handles.sort((a, b) => a - b)
      );
    });
});
