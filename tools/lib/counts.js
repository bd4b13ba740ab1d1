'use strict';

// How many cases passed and failed: { passed, failed }.

function sum(counts) {
  return counts.reduce(
    (total, count) => ({
      passed: total.passed + count.passed,
      failed: total.failed + count.failed
    }),
    { passed: 0, failed: 0 }
  );
}

/** The number that a pattern finds in a text, 0 where it finds none. */
function numberIn(text, pattern) {
  const found = text.match(pattern);
  return found ? Number(found[1]) : 0;
}

/** The counts that a tool, run by run(), has written as its last line. */
function countsOf(result) {
  const count = {
    passed: numberIn(result.stdout, /(\d+) passed, \d+ failed\s*$/),
    failed: numberIn(result.stdout, /\d+ passed, (\d+) failed\s*$/)
  };
  if (result.status !== 0 && count.failed === 0) count.failed = 1;
  return count;
}

module.exports = { countsOf, numberIn, sum };
