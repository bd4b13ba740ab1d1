'use strict';

// npm test [-- SUITE...]: set-up, build, then the suites named, or all of them. The last line is
// "N passed, M failed".

const { Failure, main } = require('./lib/run');
const { setup } = require('./lib/setup');
const { suites, sum } = require('./lib/suites');

function choose(words) {
  const unknown = words.find((word) => !suites.some((suite) => suite.name === word));
  if (unknown) {
    const names = suites.map((suite) => suite.name).join(', ');
    throw new Failure(`there is no suite '${unknown}'; there are ${names}.`);
  }
  return words.length === 0 ? suites : suites.filter((suite) => words.indexOf(suite.name) >= 0);
}

main((words) => {
  const chosen = choose(words);
  setup(['build']);
  const counts = chosen.map((suite) => {
    console.log(`\n# ${suite.name}`);
    const count = suite.run();
    console.log(`# ${suite.name}: ${count.passed} passed, ${count.failed} failed`);
    return count;
  });
  const total = sum(counts);
  console.log(`\n${total.passed} passed, ${total.failed} failed`);
  return total.failed === 0 && total.passed > 0 ? 0 : 1;
});
