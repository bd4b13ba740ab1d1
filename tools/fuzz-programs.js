'use strict';

// node tools/fuzz-programs.js SECONDS SEED TARGET...: runs programs of the fuzz targets, some at a time,
// for npm run fuzz. The last line is 'N passed, M failed'.

const { fuzzPrograms } = require('./lib/fuzz');

const [seconds, seed, ...names] = process.argv.slice(2);

fuzzPrograms(names, { seconds: Number(seconds), seed: Number(seed) }).then((count) => {
  console.log(`${count.passed} passed, ${count.failed} failed`);
  process.exitCode = count.failed === 0 ? 0 : 1;
});
