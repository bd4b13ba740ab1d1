'use strict';

// Clocks that answer milliseconds.

const wallClock = () => {
  const now = process.hrtime();
  return now[0] * 1e3 + now[1] / 1e6;
};

/** The processor's time of all threads of this process. */
const processTime = () => {
  const used = process.cpuUsage();
  return (used.user + used.system) / 1e3;
};

module.exports = { processTime, wallClock };
