'use strict';

// Runs the GoogleTest programs of a folder that are named, or all:
//
//   node test/run-native.js FOLDER [PROGRAM...]
//
// A program of many tests is run in several parts, some at a time, since many a test waits for the
// time of a medium to pass. What failed is shown, and the last line is 'N passed, M failed'.

const fs = require('fs');
const path = require('path');
const { execFileSync } = require('child_process');
const { numberIn, sum } = require('../tools/lib/counts');
const { concurrently } = require('./lib/concurrently');
const { runProgram } = require('./lib/program');

const TESTS_IN_A_PART = 16;
const JOBS = 3;
/** A part that isn't over by then hangs, under a sanitizer too. */
const PATIENCE_MS = 600 * 1000;

/** The parts of a program: { file, count, index }, as many as its tests need. */
function partsOf(file) {
  const list = execFileSync(file, ['--gtest_list_tests'], { encoding: 'utf8' });
  const tests = list.split('\n').filter((line) => line.startsWith('  ')).length;
  const count = Math.max(1, Math.ceil(tests / TESTS_IN_A_PART));
  return Array.from({ length: count }, (_, index) => ({ file, count, index }));
}

/** What is worth telling of the output of a program: nothing of tests that passed. */
const withoutSuccess = (output) =>
  output.replace(/^\[ RUN .*\n\[ {7}OK .*\n/gm, '').replace(/^\[(-{10}|={10})\].*\n/gm, '');

/** How a part ended that didn't run to its end, or not well; null if it did. */
function breakdown(run) {
  if (run.hanging) return `hung after ${PATIENCE_MS / 1000} s:\n${run.hanging}`;
  return run.signal || run.code ? `ended with ${run.signal || run.code}` : null;
}

/** Resolves with { passed, failed } of a part. */
function runPart(part) {
  const env = Object.assign({}, process.env, {
    GTEST_TOTAL_SHARDS: String(part.count),
    GTEST_SHARD_INDEX: String(part.index)
  });
  return runProgram(part.file, [], { env, patienceMs: PATIENCE_MS }).then((run) => {
    const passed = numberIn(run.output, /\[ {2}PASSED {2}\] (\d+) test/);
    const failed = numberIn(run.output, /(\d+) FAILED TEST/);
    const end = breakdown(run) || (passed + failed === 0 ? 'ran no test' : null);
    if (end) {
      const said = withoutSuccess(run.output) + run.errors;
      process.stdout.write(`${said}${path.basename(part.file)} ${end}\n`);
    }
    // A program that crashed, hung or ran nothing has failed once.
    return { passed, failed: failed || (end ? 1 : 0) };
  });
}

function main(folder, programs) {
  const all = fs.readdirSync(folder).filter((name) => name.endsWith('_test'));
  const names = programs.length > 0 ? programs : all;
  const parts = [].concat.apply(
    [],
    names.map((name) => partsOf(path.join(folder, name)))
  );
  // Those that take long first.
  parts.sort((one, other) => other.count - one.count);
  const counts = [];
  const runAndKeep = (part) => runPart(part).then((count) => counts.push(count));
  return concurrently(parts, JOBS, runAndKeep).then(() => {
    const total = sum(counts);
    console.log(`${total.passed} passed, ${total.failed} failed`);
    process.exitCode = total.failed === 0 && total.passed > 0 ? 0 : 1;
  });
}

main(process.argv[2], process.argv.slice(3));
