'use strict';

// Canvases and fonts for tests, with the handles that the porting layer knows them by.
//
// What these functions make is kept from being collected, unless its name says otherwise: the end
// of a canvas or font would appear in the log at a moment that no test chooses, and the end of any
// font unbinds all canvases.

const quiravent = require('./module');
const recorder = require('./recorder');

const kept = [];

/** Keeps an object for the rest of the process; gives it back. */
function keep(object) {
  kept.push(object);
  return object;
}

/** The handle behind a canvas that isn't released. Clears the log. */
function handleOf(canvas) {
  recorder.clear();
  canvas.getSize();
  const handle = recorder.argsOf('pl_gfx_Canvas_GetSize')[0][0];
  recorder.clear();
  return handle;
}

/** A new off-screen canvas as { canvas, handle }, with nothing in the log. */
function newUnkeptCanvas(width, height) {
  const canvas = quiravent.graphicServices.createCanvas(width || 8, height || 8);
  return { canvas, handle: handleOf(canvas) };
}

function newCanvas(width, height) {
  return keep(newUnkeptCanvas(width, height));
}

/**
 * Calls a loading function with arguments and a callback; resolves with what the callback is
 * given, as { error, result }.
 */
function loadUnkept(name) {
  const args = Array.prototype.slice.call(arguments, 1);
  return new Promise((resolve) => {
    const callback = (error, result) => resolve({ error, result });
    quiravent.graphicServices[name].apply(null, args.concat(callback));
  });
}

function load() {
  return loadUnkept.apply(null, arguments).then(keep);
}

/** Resolves with a new font, with nothing in the log. */
function newFont() {
  return load('loadFont', 'a font', 20).then((outcome) => {
    recorder.clear();
    return outcome.result;
  });
}

module.exports = { keep, handleOf, newCanvas, newUnkeptCanvas, load, loadUnkept, newFont };
