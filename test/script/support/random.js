'use strict';

/** A generator of numbers from 0 to 2^32 - 1, the same for the same seed. */
function generator(seed) {
  let state = seed * 2654435769;
  return () => {
    state = (state + 0x6d2b79f5) >>> 0;
    let mixed = Math.imul(state ^ (state >>> 15), state | 1);
    mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
    return (mixed ^ (mixed >>> 14)) >>> 0;
  };
}

function pick(next, list) {
  return list[next() % list.length];
}

module.exports = { generator, pick };
