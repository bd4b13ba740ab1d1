'use strict';

// Runs every GoogleTest program of a folder:
//
//   node test/run-native.js FOLDER [--jobs N]
//
// A program of many tests is run in several parts, some at a time, since many a test waits for the
// time of a medium to pass. What failed is shown, and the last line is 'N passed, M failed'.

const fs = require('fs');
const path = require('path');
const { execFile, execFileSync } = require('child_process');
const { numberIn, sum } = require('../tools/lib/counts');
const { concurrently } = require('./lib/concurrently');

const TESTS_IN_A_PART = 16;
const MOST_OUTPUT = 1 << 28;

/** The parts of a program: { file, count, index }, as many as its tests need. */
function partsOf(file) {
  const list = execFileSync(file, ['--gtest_list_tests'], { encoding: 'utf8' });
  const tests = list.split('\n').filter((line) => line.startsWith('  ')).length;
  const count = Math.max(1, Math.ceil(tests / TESTS_IN_A_PART));
  return Array.from({ length: count }, (_, index) => ({ file, count, index }));
}

/** Resolves with { passed, failed } of a part. */
function runPart(part) {
  const env = Object.assign({}, process.env, {
    GTEST_TOTAL_SHARDS: String(part.count),
    GTEST_SHARD_INDEX: String(part.index)
  });
  const options = { env, maxBuffer: MOST_OUTPUT };
  return new Promise((resolve) => {
    execFile(part.file, ['--gtest_brief=1'], options, (error, output, errors) => {
      const passed = numberIn(output, /\[ {2}PASSED {2}\] (\d+) test/);
      const failed = numberIn(output, /(\d+) FAILED TEST/);
      // A program that crashed, or ran nothing, has failed once.
      const isBroken = (error && failed === 0) || passed + failed === 0;
      if (error || isBroken) {
        const end = error ? error.signal || error.code : 'no test';
        process.stdout.write(`${output}${errors}${path.basename(part.file)}: ${end}\n`);
      }
      resolve({ passed, failed: failed + (isBroken ? 1 : 0) });
    });
  });
}

function main(folder, jobs) {
  const names = fs.readdirSync(folder).filter((name) => name.endsWith('_test'));
  const parts = [].concat.apply(
    [],
    names.map((name) => partsOf(path.join(folder, name)))
  );
  // Those that take long first.
  parts.sort((one, other) => other.count - one.count);
  const counts = [];
  const runAndKeep = (part) => runPart(part).then((count) => counts.push(count));
  return concurrently(parts, jobs, runAndKeep).then(() => {
    const total = sum(counts);
    console.log(`${total.passed} passed, ${total.failed} failed`);
    process.exitCode = total.failed === 0 && total.passed > 0 ? 0 : 1;
  });
}

main(process.argv[2], process.argv[3] === '--jobs' ? Number(process.argv[4]) : 3);
