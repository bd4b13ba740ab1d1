'use strict';

const recorder = require('./recorder');

/** Rounds of collection after which something that still lives is taken to live for good. */
const MOST_ROUNDS = 20;
/** Rounds after which all is gone that can go. One has been enough under every runtime. */
const ROUNDS = 5;

/**
 * Collects garbage, turning the loop in between, until condition() holds; resolves with whether it
 * came to hold. Without a condition several rounds are made, to give everything a chance to go.
 */
function collect(condition) {
  const rounds = condition ? MOST_ROUNDS : ROUNDS;
  let round = 0;
  return new Promise((resolve) => {
    const turn = () => {
      if (condition && condition()) return resolve(true);
      if (round === rounds) return resolve(false);
      round += 1;
      global.gc();
      setImmediate(turn);
      return undefined;
    };
    // Not in this turn: what the caller's frames still hold can't go yet.
    setImmediate(turn);
  });
}

/** The handles that a function of the porting layer released, in rising order. */
function released(fn) {
  return recorder
    .argsOf(fn)
    .map((args) => args[0])
    .sort((a, b) => a - b);
}

module.exports = { collect, released };
