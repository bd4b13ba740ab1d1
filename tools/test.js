'use strict';

// npm test [-- WORD...]: set-up, build, then the suites named, by themselves or by their group; the
// ordinary ones if none is, and with them those of the group 'ci' where the variable CI is set, as
// continuous integration does. The last line is "N passed, M failed".

const { buildAhead, needsOf } = require('./lib/ahead');
const { sum } = require('./lib/counts');
const { Failure, main } = require('./lib/run');
const { checkInstallable, setup } = require('./lib/setup');
const { isIntegration, suites } = require('./lib/suites');

const isOrdinary = (suite) => !suite.group || (suite.group === 'ci' && isIntegration);
const isNamedBy = (word) => (suite) => suite.name === word || suite.group === word;

function choose(words) {
  const unknown = words.find((word) => !suites.some(isNamedBy(word)));
  if (unknown) {
    const names = suites.map((suite) => suite.name).join(', ');
    throw new Failure(`there is no suite '${unknown}'; there are ${names}.`);
  }
  if (words.length === 0) return suites.filter(isOrdinary);
  return suites.filter((suite) => words.some((word) => isNamedBy(word)(suite)));
}

const met = new Set();

/** Sees to what a suite needs, once where several need the same. */
function prepare(suite) {
  needsOf(suite)
    .filter((need) => !met.has(need))
    .forEach((need) => {
      need();
      met.add(need);
    });
}

/** Runs a suite and tells its name, its count and its time. */
function runSuite(suite) {
  console.log(`\n# ${suite.name}`);
  const start = Date.now();
  prepare(suite);
  const count = suite.run();
  const seconds = Math.round((Date.now() - start) / 1000);
  console.log(`# ${suite.name}: ${count.passed} passed, ${count.failed} failed (${seconds} s)`);
  return count;
}

/** Runs suites, of which the first is prepared before others are built for. */
function runWhileBuilding(chosen) {
  if (chosen.length === 0) return [];
  prepare(chosen[0]);
  buildAhead(chosen.slice(1));
  return chosen.map(runSuite);
}

main((words) => {
  const chosen = choose(words);
  setup(['build']);
  // These are installed while the first tests run.
  checkInstallable([].concat(...chosen.map((suite) => suite.packages || [])));
  const timed = chosen.map((suite) => Boolean(suite.isTimed)).lastIndexOf(true) + 1;
  const counts = chosen.slice(0, timed).map(runSuite);
  const total = sum(counts.concat(runWhileBuilding(chosen.slice(timed))));
  console.log(`\n${total.passed} passed, ${total.failed} failed`);
  return total.failed === 0 && total.passed > 0 ? 0 : 1;
});
