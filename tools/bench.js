'use strict';

// npm run bench: set-up, build, then the benchmarks.

const { build } = require('./lib/build');
const { main, mustRun } = require('./lib/run');
const { setup } = require('./lib/setup');

main(() => {
  setup(['build']);
  build('release');
  mustRun(process.execPath, ['bench/script-calls.js']);
});
