'use strict';

const recorder = require('./recorder');

/**
 * Calls body(exceptions), which gives a promise, and until that is settled keeps in the list what
 * nobody catches, instead of its ending the process.
 */
function keepingUncaught(body) {
  const exceptions = [];
  const keep = (exception) => {
    exceptions.push(exception);
    recorder.recheck();
  };
  process.on('uncaughtException', keep);
  const end = () => process.removeListener('uncaughtException', keep);
  return body(exceptions).then(end, (error) => {
    end();
    throw error;
  });
}

/** The same until there is one; resolves with it. */
function uncaughtBy(body) {
  let first = null;
  return keepingUncaught((exceptions) => {
    body();
    return recorder
      .waitUntil(() => exceptions.length > 0, 'an exception')
      .then(() => (first = exceptions[0]));
  }).then(() => first);
}

module.exports = { keepingUncaught, uncaughtBy };
