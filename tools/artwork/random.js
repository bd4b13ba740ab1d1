'use strict';

/**
 * A repeatable source of numbers in [0, 1): the generator "mulberry32", with a function to draw a
 * number from a range. The same seed draws the same picture on every machine.
 */
function seededRandom(seed) {
  let state = seed >>> 0;
  const random = () => {
    state = (state + 0x6d2b79f5) >>> 0;
    let mixed = Math.imul(state ^ (state >>> 15), state | 1);
    mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
    return ((mixed ^ (mixed >>> 14)) >>> 0) / 4294967296;
  };
  random.between = (low, high) => low + (high - low) * random();
  return random;
}

module.exports = { seededRandom };
