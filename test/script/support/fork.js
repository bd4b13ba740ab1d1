'use strict';

// Runs calls in a child that is forked from this process, for all that ends a process at once.

const os = require('os');
const path = require('path');
const { buildFolder } = require('./build');
const { patience } = require('./pace');
const { quiet } = require('./threads');
const native = require(path.join(buildFolder, 'recorder', 'recorder.node'));

/** After which a child is ended, in seconds. */
const PATIENCE = patience(20);

// Without it the engine has threads compile and sweep for it. A child has none of them, and that which
// gives them work, or finds a lock held by one, waits for ever.
const NO_THREADS = '--predictable';
if (process.execArgv.indexOf(NO_THREADS) < 0) throw new Error(`Start this test with ${NO_THREADS}`);

/** The name of a signal, null for none. */
function nameOf(signal) {
  const names = Object.keys(os.constants.signals);
  return names.find((name) => os.constants.signals[name] === signal) || null;
}

/**
 * Calls act() in a child that begins with all that this process has, but has the script thread alone:
 * nothing is heard there, and no job is done. Resolves with { code, signal, stdout, stderr } as
 * runScript() does, in a part of the time that a process takes to begin.
 */
function inChild(act) {
  return quiet().then(() => {
    const end = native.inChild(PATIENCE, act);
    return {
      code: end.signal ? null : end.code,
      signal: nameOf(end.signal),
      stdout: end.output,
      stderr: end.errors
    };
  });
}

module.exports = { inChild };
