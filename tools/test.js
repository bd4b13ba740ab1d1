'use strict';

// npm test [-- WORD...]: set-up, build, then the suites named, by themselves or by their group; the
// ordinary ones if none is. The last line is "N passed, M failed".

const { Failure, main } = require('./lib/run');
const { setup } = require('./lib/setup');
const { suites, sum } = require('./lib/suites');

const isNamedBy = (word) => (suite) => suite.name === word || suite.group === word;

function choose(words) {
  const unknown = words.find((word) => !suites.some(isNamedBy(word)));
  if (unknown) {
    const names = suites.map((suite) => suite.name).join(', ');
    throw new Failure(`there is no suite '${unknown}'; there are ${names}.`);
  }
  if (words.length === 0) return suites.filter((suite) => !suite.group);
  return suites.filter((suite) => words.some((word) => isNamedBy(word)(suite)));
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
