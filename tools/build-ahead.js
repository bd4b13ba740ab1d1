'use strict';

// node tools/build-ahead.js SUITE...: builds what the suites need, in their order, for a process that
// runs them meanwhile; ends early when that process has ended.

const { helpToBuild } = require('./lib/ahead');
const { main } = require('./lib/run');
const { suites } = require('./lib/suites');

main((names) => helpToBuild(names.map((name) => suites.find((suite) => suite.name === name))));
