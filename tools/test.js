'use strict';

// npm test [-- SUITE...]: set-up, build, then the suites named, or all of them; those that take long
// only in continuous integration, where the variable CI is set. The last line is "N passed, M
// failed".

const { sum } = require('./lib/counts');
const { Failure, main } = require('./lib/run');
const { setup } = require('./lib/setup');
const { suites } = require('./lib/suites');

function choose(words) {
  const unknown = words.find((word) => !suites.some((suite) => suite.name === word));
  if (unknown) {
    const names = suites.map((suite) => suite.name).join(', ');
    throw new Failure(`there is no suite '${unknown}'; there are ${names}.`);
  }
  if (words.length === 0) return suites.filter((suite) => process.env.CI || !suite.isLong);
  return suites.filter((suite) => words.indexOf(suite.name) >= 0);
}

main((words) => {
  const chosen = choose(words);
  setup(['build']);
  const counts = chosen.map((suite) => {
    console.log(`\n# ${suite.name}`);
    const start = Date.now();
    const count = suite.run();
    const seconds = Math.round((Date.now() - start) / 1000);
    const result = `${count.passed} passed, ${count.failed} failed`;
    console.log(`# ${suite.name}: ${result} (${seconds} s)`);
    return count;
  });
  const total = sum(counts);
  console.log(`\n${total.passed} passed, ${total.failed} failed`);
  return total.failed === 0 && total.passed > 0 ? 0 : 1;
});
