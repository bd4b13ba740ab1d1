'use strict';

// Runs every *.test.js of a folder, each in a process of its own:
//
//   node test/run-tap.js FOLDER --library DIR [--filter TEXT] [--without TEXT] [--jobs N]
//
// DIR holds the porting layer that the tests run over; it must be known to the loader before a
// process begins, which is why tests aren't run directly. TEXT chooses, or leaves out, the files whose
// names hold it. A file's line '// Flags: --NAME...' has the runtime started with these too. Failures
// are printed as the test told them, and the last line is 'N passed, M failed'.

const fs = require('fs');
const path = require('path');
const { concurrently } = require('./lib/concurrently');
const { runProgram } = require('./lib/program');
const { runtime } = require('./script/support/build');
const { patience } = require('./script/support/pace');

/** A file that isn't over by then hangs. */
const PATIENCE_MS = patience(180 * 1000);

const USAGE =
  'usage: node test/run-tap.js FOLDER --library DIR [--filter TEXT] [--without TEXT] [--jobs N]';

function parseArguments(args) {
  const options = { folder: null, library: null, filter: '', without: null, jobs: 3 };
  const rest = args.slice();
  while (rest.length) {
    const arg = rest.shift();
    const name = arg.replace(/^--/, '');
    if (!arg.startsWith('--') && options.folder === null) options.folder = arg;
    else if (arg.startsWith('--') && name in options && rest.length) options[name] = rest.shift();
    else throw new Error(`'${arg}' is not understood.\n${USAGE}`);
  }
  if (!options.folder || !options.library) throw new Error(USAGE);
  options.jobs = Number(options.jobs);
  if (!(options.jobs >= 1)) throw new Error(`--jobs must be a number from 1 on.\n${USAGE}`);
  return options;
}

/** What the runtime is told beside the name of a test file. */
function flagsFor(file) {
  const wanted = fs.readFileSync(file, 'utf8').match(/^\/\/ Flags: (.*)$/m);
  return ['--expose-gc'].concat(wanted ? wanted[1].split(' ') : []);
}

/** Runs one file, as runProgram does. */
function runFile(file, options) {
  const loaderPath = [path.resolve(options.library), process.env.LD_LIBRARY_PATH]
    .filter(Boolean)
    .join(':');
  const env = Object.assign({}, process.env, { LD_LIBRARY_PATH: loaderPath });
  return runProgram(runtime, flagsFor(file).concat(file), { env, patienceMs: PATIENCE_MS });
}

/** Reads TAP: { passed, failed, planned (-1 without a plan), failures: the failing blocks }. */
function readTap(output) {
  const tap = { passed: 0, failed: 0, planned: -1, failures: [] };
  let title = '';
  let block = null;
  for (const line of output.split('\n')) {
    const plan = line.match(/^1\.\.(\d+)/);
    const isResult = /^(not )?ok \d/.test(line);
    if (isResult || line.startsWith('# ') || plan) block = null;
    if (line.startsWith('# ')) title = line;
    else if (plan) tap.planned = Number(plan[1]);
    else if (line.startsWith('ok ')) tap.passed += 1;
    else if (isResult) {
      tap.failed += 1;
      block = [title, line];
      tap.failures.push(block);
    } else if (block) block.push(line);
  }
  return tap;
}

/** What is wrong with a run beside the failures that it told; null if nothing is. */
function breakdown(run, tap) {
  if (run.hanging) return `hung after ${PATIENCE_MS / 1000} s:\n${run.hanging}`;
  if (run.signal) return `died of ${run.signal}`;
  if (tap.passed + tap.failed === 0) return 'made no assertion';
  if (tap.planned !== tap.passed + tap.failed) return 'ended before its last test';
  if (run.code !== 0 && tap.failed === 0) return `ended with exit code ${run.code}`;
  return null;
}

function report(file, run) {
  const tap = readTap(run.output);
  const broken = breakdown(run, tap);
  if (broken) tap.failed += 1;
  const state = tap.failed ? 'FAILED' : 'ok    ';
  process.stdout.write(`${state} ${path.basename(file)} (${tap.passed})\n`);
  for (const block of tap.failures) process.stdout.write(block.join('\n') + '\n');
  if (broken) process.stdout.write(`  ${path.basename(file)} ${broken}\n`);
  if (broken && !tap.failures.length) process.stdout.write(run.output.slice(-2000) + '\n');
  if (tap.failed) process.stdout.write(run.errors);
  return tap;
}

/** Runs all; resolves with the number of failures. */
function main(args) {
  const options = parseArguments(args);
  const files = fs
    .readdirSync(options.folder)
    .filter((name) => name.endsWith('.test.js') && name.indexOf(options.filter) >= 0)
    .filter((name) => options.without === null || name.indexOf(options.without) < 0)
    .sort()
    .map((name) => path.join(options.folder, name));
  const total = { passed: 0, failed: 0 };

  const runAndCount = (file) =>
    runFile(file, options).then((run) => {
      const tap = report(file, run);
      total.passed += tap.passed;
      total.failed += tap.failed;
    });
  return concurrently(files, options.jobs, runAndCount).then(() => {
    if (total.passed + total.failed === 0) {
      process.stdout.write(`No test file of ${options.folder} was run.\n`);
      total.failed = 1;
    }
    process.stdout.write(`${total.passed} passed, ${total.failed} failed\n`);
    return total.failed;
  });
}

/** Runs all and ends the process with the exit code that fits. */
function runAndExit(args) {
  return Promise.resolve()
    .then(() => main(args))
    .catch((error) => {
      process.stderr.write(error.message + '\n');
      return 1;
    })
    .then((failed) => {
      process.exitCode = failed ? 1 : 0;
    });
}

module.exports = { runAndExit };

if (require.main === module) runAndExit(process.argv.slice(2));
