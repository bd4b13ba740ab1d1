'use strict';

// Makes one function of the porting layer fail, and has a script's call meet the fault.

const { inSequence } = require('../lib/concurrently');
const recorder = require('../script/support/recorder');

/** After which a call that blocks the script thread goes on, in ms: nothing else could let it go. */
const BLOCKS_FOR = 20;

/** By fault: what the call sees of it, by a row of rows.js; undefined where the fault can't be. */
const EXPECTED = {
  none: (row) => ({ seen: row.seen }),
  status: (row) => ({ seen: row.failed }),
  'zero handle': (row) => ('zero' in row ? { seen: row.zero } : undefined),
  blocking: (row) => ({ seen: row.seen })
};

const faults = Object.keys(EXPECTED);

let time = 0;

/** A call whose device function waits on a pool thread, while the script thread goes on. */
function callBlockedOnPool(fn, call) {
  const held = recorder.hold(fn);
  const result = call();
  return held
    .blocked()
    .then(() => new Promise((resolve) => setImmediate(resolve)))
    .then(() => {
      held.open();
      return result;
    });
}

/**
 * Resolves with what the script sees of a row's call while its function has the fault, as { seen,
 * reached }: reached tells whether the function was called at all.
 */
function inject(fn, row, fault) {
  recorder.reset();
  time += 1;
  const reached = () => recorder.calls(fn).length > 0;
  const call = () => row.call(time, reached);
  if (fault === 'status') recorder.once(fn, { status: 5 });
  if (fault === 'zero handle') recorder.once(fn, { outputs: { handle: 0 } });
  if (fault === 'blocking' && !row.pool) {
    recorder.once(fn, { gate: `never ${time}`, patience: BLOCKS_FOR });
  }
  const result = fault === 'blocking' && row.pool ? callBlockedOnPool(fn, call) : call();
  return Promise.resolve(result).then((seen) => ({ seen, reached: reached() }));
}

/** Resolves when every function of the rows has had every fault. */
function injectAll(rows) {
  const all = [];
  Object.keys(rows).forEach((fn) =>
    faults
      .filter((fault) => EXPECTED[fault](rows[fn]))
      .forEach((fault) => all.push(() => inject(fn, rows[fn], fault)))
  );
  return inSequence(all, (next) => next());
}

module.exports = {
  injectAll,
  faults,
  expected: (row, fault) => EXPECTED[fault](row),
  inject
};
