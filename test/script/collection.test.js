'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { newCanvas, newUnkeptCanvas, newFont, loadUnkept, handleOf } = require('./support/graphics');
const { collect, released } = require('./support/collection');

const CANVAS = 'pl_gfx_ReleaseCanvas';
const LIVE_PLAYER = 'pl_dtv_Action_releasePlayer';

/** Makes canvases and drops them; gives their handles. */
function dropCanvases(count, use) {
  const handles = [];
  for (let index = 0; index < count; index += 1) {
    const made = newUnkeptCanvas();
    use(made.canvas, index);
    handles.push(made.handle);
  }
  return handles;
}

test('each dropped canvas is released once, on the script thread', (t) => {
  const handles = dropCanvases(30, () => {});
  recorder.clear();
  return collect(() => released(CANVAS).length >= handles.length)
    .then(() => collect())
    .then(() => {
      t.deepEqual(released(CANVAS), handles);
      t.ok(recorder.calls().every((call) => call.thread === 'script'));
    });
});

test('a canvas that a script has released is not released again', (t) => {
  const handles = dropCanvases(30, (canvas, index) => {
    if (index % 2) canvas.release();
  });
  recorder.clear();
  const remaining = handles.filter((handle, index) => index % 2 === 0);
  return collect(() => released(CANVAS).length >= remaining.length)
    .then(() => collect())
    .then(() => t.deepEqual(released(CANVAS), remaining));
});

test('a dropped canvas that has a font is released, and the font stays usable', (t) => {
  return newFont().then((font) => {
    const handles = dropCanvases(10, (canvas) => canvas.setFont(font));
    recorder.clear();
    return collect(() => released(CANVAS).length >= handles.length).then(() => {
      t.deepEqual(released(CANVAS), handles);
      t.deepEqual(recorder.calls('pl_gfx_ReleaseFont'), []);
      const { canvas } = newCanvas();
      canvas.setFont(font);
      t.ok(canvas.measureText('a').width > 0);
    });
  });
});

test('a dropped image is released', (t) => {
  return loadUnkept('loadImage', 'path')
    .then((outcome) => {
      const handle = handleOf(outcome.result);
      outcome.result = null;
      return handle;
    })
    .then((handle) => {
      return collect(() => released(CANVAS).length > 0).then(() =>
        t.deepEqual(released(CANVAS), [handle])
      );
    });
});

test('the target outlives its script objects', (t) => {
  const services = quiravent.graphicServices;
  for (let count = 0; count < 20; count += 1) services.getTargetCanvas().setColor('red');
  recorder.clear();
  return collect().then(() => {
    t.deepEqual(recorder.calls(), []);
    const target = services.getTargetCanvas();
    t.deepEqual(recorder.calls('pl_gfx_GetTargetCanvas'), [], 'it is the same target');
    t.equal(target.isInvalid(), false);
    target.setColor('red');
    t.deepEqual(recorder.calls('pl_gfx_Canvas_SetColor'), [], 'with what was set on it');
    target.fillRect(1, 2, 3, 4);
    t.equal(recorder.calls('pl_gfx_Canvas_FillRect').length, 1);
  });
});

test('a dropped live player is released once, unless a script has done so', (t) => {
  recorder.reset();
  const handles = Array.from({ length: 60 }, (each, index) => 1000 + index);
  handles.forEach((handle) => {
    recorder.once('pl_dtv_Action_getPlayer', { outputs: { handle } });
    const player = quiravent.tunerServices.getPlayer(1, 2, 3);
    if (handle % 2) player.release();
  });
  return collect(() => released(LIVE_PLAYER).length >= handles.length)
    .then(() => collect())
    .then(() => {
      t.deepEqual(released(LIVE_PLAYER), handles);
      t.ok(recorder.calls(LIVE_PLAYER).every((call) => call.thread === 'script'));
    });
});

/** Resolves once a player of each kind has been made and dropped. */
function dropPlayers() {
  const make = (name) => {
    return new Promise((resolve) => quiravent.mediaServices[name]('url', {}, () => resolve()));
  };
  return Promise.all([make('getPlayer'), make('getAdPlayer')]);
}

test('dropped players are left to the porting layer', (t) => {
  return dropPlayers().then(() => {
    recorder.clear();
    return collect().then(() => t.deepEqual(recorder.calls(), []));
  });
});

test('dropped stores are left to the porting layer', (t) => {
  for (let count = 0; count < 20; count += 1) quiravent.dataServices.getPersistent('a').get('b');
  recorder.clear();
  return collect().then(() => t.deepEqual(recorder.calls(), []));
});
