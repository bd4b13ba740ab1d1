'use strict';

// How many times slower than on this machine's own processor the tests run: 1, or what
// QUIRAVENT_SLOWNESS says, as it does for a runtime in an emulator. Whatever waits is given so many
// times as long, and a test of load does so many times less of it.

const slowness = Number(process.env.QUIRAVENT_SLOWNESS || 1);
if (!(slowness >= 1)) {
  throw new Error(`QUIRAVENT_SLOWNESS is '${process.env.QUIRAVENT_SLOWNESS}', not 1 or more.`);
}

/** For how long to wait in vain, in ms, where `ms` are enough on this machine's own processor. */
function patience(ms) {
  return ms * slowness;
}

/** How much of a load to make where this machine's own processor gets all of it. */
function load(count) {
  return Math.ceil(count / slowness);
}

module.exports = { load, patience };
