'use strict';

// The suites of tests. Each runs by itself and answers how many of its cases passed and failed.

const fs = require('fs');
const path = require('path');
const { build } = require('./build');
const { checkCounts } = require('./instructions');
const { root, run } = require('./run');

function sum(counts) {
  return counts.reduce(
    (total, count) => ({
      passed: total.passed + count.passed,
      failed: total.failed + count.failed
    }),
    { passed: 0, failed: 0 }
  );
}

function numberIn(text, pattern) {
  const found = text.match(pattern);
  return found ? Number(found[1]) : 0;
}

/** Runs one GoogleTest program; its output is shown when it fails. */
function runNativeProgram(program) {
  const result = run(program, ['--gtest_brief=1'], { capture: true });
  const passed = numberIn(result.stdout, /\[ {2}PASSED {2}\] (\d+) test/);
  const failed = numberIn(result.stdout, /(\d+) FAILED TEST/);
  if (result.status !== 0) process.stdout.write(result.stdout + result.stderr);
  // A program that crashed, or ran nothing, has failed once.
  const broken = (result.status !== 0 && failed === 0) || passed + failed === 0;
  return { passed, failed: broken ? failed + 1 : failed };
}

function runNative(preset) {
  build(preset);
  const folder = path.join(root, 'build', preset, 'test');
  const programs = fs.readdirSync(folder).filter((name) => name.endsWith('_test'));
  return sum(programs.map((name) => runNativeProgram(path.join(folder, name))));
}

/** Runs a folder of script tests over the porting layer in a folder of the build. */
function runScripts(folder, library) {
  build('release');
  const words = ['test/run-tap.js', folder, '--library', path.join('build', 'release', library)];
  const result = run(process.execPath, words, { stdio: ['ignore', 'pipe', 'inherit'] });
  process.stdout.write(result.stdout);
  const count = {
    passed: numberIn(result.stdout, /(\d+) passed, \d+ failed\s*$/),
    failed: numberIn(result.stdout, /\d+ passed, (\d+) failed\s*$/)
  };
  if (result.status !== 0 && count.failed === 0) count.failed = 1;
  return count;
}

/** In the order in which they are run: what fails fast comes first. */
const suites = [
  { name: 'native', run: () => runNative('release') },
  { name: 'script', run: () => runScripts('test/script', 'recorder') },
  { name: 'cli', run: () => runScripts('test/cli', 'bench') },
  { name: 'device', run: () => runScripts('test/device', '.') },
  { name: 'instructions', run: checkCounts },
  { name: 'native-sanitized', run: () => runNative('asan') }
];

module.exports = { suites, sum };
