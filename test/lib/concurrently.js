'use strict';

/** Calls run(item), which gives a promise, for each of the items in their order, so many at a time. */
function concurrently(items, jobs, run) {
  const rest = items.slice();
  function runNext() {
    return rest.length === 0 ? Promise.resolve() : run(rest.shift()).then(runNext);
  }
  return Promise.all(Array.from({ length: jobs }, runNext));
}

/** The same one after the other. */
const inSequence = (items, run) => concurrently(items, 1, run);

module.exports = { concurrently, inSequence };
