'use strict';

// node tools/build-ahead.js SUITE...: builds what the suites need, in their order, for a process that
// runs them meanwhile; ends early when that process has ended.

const { attempt, main } = require('./lib/run');
const { suites } = require('./lib/suites');

const parent = process.ppid;

main((names) => {
  names.forEach((name) => {
    if (process.ppid !== parent) return;
    const { prepare } = suites.find((suite) => suite.name === name);
    attempt(prepare, console.log);
  });
});
