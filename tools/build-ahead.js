'use strict';

// node tools/build-ahead.js first|last SUITE...: builds what the suites need, those that are due first
// or last at first, for a process that runs them meanwhile; ends early when that process has ended.

const { helpToBuild } = require('./lib/ahead');
const { main } = require('./lib/run');
const { suites } = require('./lib/suites');

main(([which, ...names]) =>
  helpToBuild(
    which,
    names.map((name) => suites.find((suite) => suite.name === name))
  )
);
