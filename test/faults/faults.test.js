'use strict';

// Every function of the porting layer fails: once by its status, once by a handle of 0, once by
// blocking. What the script sees is as documented, and never an exception.

const test = require('tape');
const recorder = require('../script/support/recorder');
const { runScript } = require('../script/support/process');

// Before anything loads the module, which calls it.
recorder.once('pl_input_init', { status: 5, gate: 'never', patience: 20 });

const { rows, prepare, UNREACHED } = require('./rows');
const { faults, expected, inject } = require('./inject');
const quiravent = require('../script/support/module');

test('the module is whole when the remote control isn’t ready', (t) => {
  t.equal(recorder.calls('pl_input_init').length, 1);
  t.equal(Object.keys(quiravent).length, 13);
  t.end();
});

test('every function has a row, or a reason for none', (t) => {
  const known = Object.keys(rows).concat(Object.keys(UNREACHED)).sort();
  t.deepEqual(known, recorder.functions.slice().sort());
  return prepare();
});

Object.keys(rows).forEach((fn) => {
  faults.forEach((fault) => {
    const outcome = expected(rows[fn], fault);
    if (!outcome) return;
    test(`${fn}, fault: ${fault}`, (t) => {
      return inject(fn, rows[fn], fault).then((result) => {
        t.ok(result.reached, 'the function was called');
        t.deepEqual(result.seen, outcome.seen);
      });
    });
  });
});

// [how the device answers, whether there is a canvas, and whether it is invalid]
const TARGETS = [
  [{ status: 5 }, 'none'],
  [{ outputs: { handle: 0 } }, 'invalid'],
  [{ gate: 'never', patience: 20 }, 'valid']
];

TARGETS.forEach((row) => {
  const behaviour = JSON.stringify(row[0]);
  test(`pl_gfx_GetTargetCanvas, fault: ${behaviour}`, (t) => {
    const source = `
      recorder.once('pl_gfx_GetTargetCanvas', ${behaviour});
      const canvas = quiravent.graphicServices.getTargetCanvas();
      say(!canvas ? 'none' : canvas.isInvalid() ? 'invalid' : 'valid');`;
    return runScript(source).then((result) => {
      t.equal(result.code, 0, result.stderr);
      t.equal(result.stdout, row[1]);
    });
  });
});

// The thread that serves the pipe, which "initProperties" has started, waits for good.
test('after the end', (t) => {
  setImmediate(() => process.exit());
  t.end();
});
