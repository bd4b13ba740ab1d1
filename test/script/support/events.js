'use strict';

const recorder = require('./recorder');

/**
 * Fires events again and again until condition() holds. A report that finds its worker on the way
 * to its wait lies there until the next one, so that a single report need not arrive by itself.
 */
function fireUntil(events, condition, thread) {
  return recorder
    .fire(events, thread)
    .then(() => new Promise((resolve) => setImmediate(resolve)))
    .then(() => (condition() ? undefined : fireUntil(events, condition, thread)));
}

module.exports = { fireUntil };
