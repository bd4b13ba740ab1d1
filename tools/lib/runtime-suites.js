'use strict';

// What is tested under each script runtime.

const path = require('path');
const { buildKernels, checkKernels } = require('./armKernels');
const { sum } = require('./counts');
const { buildForDevice, compileForDevice } = require('./device-build');
const { Failure, attempt } = require('./run');
const { buildFor, fetchRuntime, writeStarter } = require('./runtimes');
const { prepareSamples, testSamples } = require('./samples');
const { runScriptTests } = require('./script-tests');

/** Every runtime by processor and version, with its suites. */
const RUNTIMES = [
  ['x64', '7.10.1', 'build script samples'],
  ['x64', '8.17.0', 'build'],
  ['x64', '12.22.12', 'build'],
  ['x64', '14.21.3', 'build'],
  ['x64', '16.20.2', 'build'],
  ['x64', '18.20.4', 'build'],
  ['x64', '20.11.0', 'build script samples'],
  ['x64', '22.11.0', 'build script samples'],
  ['x64', '24.11.0', 'build script samples'],
  ['x64', '26.10.0', 'build script samples'],
  // For this one there is no runtime to be had on ARM; its module is built and checked.
  ['armv7l', '7.10.1', 'device'],
  ['armv7l', '14.12.0', 'build script'],
  ['armv7l', '20.11.0', 'build script kernels']
].map((row) => ({
  name: `${row[0]}-${row[1]}`,
  processor: row[0],
  version: row[1],
  suites: row[2].split(' ')
}));

/** Those that have a suite left for which isLeftOut(row, its name) doesn't hold, with just these. */
function rowsWithout(isLeftOut) {
  const rows = RUNTIMES.map((row) =>
    Object.assign({}, row, { suites: row.suites.filter((name) => !isLeftOut(row, name)) })
  );
  return rows.filter((row) => row.suites.length > 0);
}

/** The one whose pictures those of the others must equal. */
const REFERENCE = ['x64', '20.11.0'];

/** A runtime with its build: what fetchRuntime gives, and `build`, the folder. */
function buildWith(processor, version, targets) {
  const runtime = fetchRuntime(processor, version);
  return Object.assign(runtime, { build: buildFor(runtime, targets) });
}

/** The module must build without a warning; only what is run needs the rest. */
function buildRow(row) {
  const isRun = row.suites.includes('script');
  buildWith(row.processor, row.version, [isRun ? 'script_tests' : 'quiravent']);
}

function testBuild(row) {
  buildRow(row);
  return { passed: 1, failed: 0 };
}

function testScripts(row) {
  const runtime = buildWith(row.processor, row.version, ['script_tests']);
  const variables = {
    QUIRAVENT_BUILD: runtime.build,
    QUIRAVENT_RUNTIME: writeStarter(runtime, runtime.build),
    QUIRAVENT_SLOWNESS: String(runtime.processor.slowness)
  };
  return runScriptTests('test/script', path.join(runtime.build, 'recorder'), [], variables);
}

function testSamplesOf(row) {
  prepareSamples();
  const reference = buildWith(REFERENCE[0], REFERENCE[1], ['quiravent']);
  return testSamples(buildWith(row.processor, row.version, ['quiravent']), reference);
}

/** The module as it goes to a set-top box. */
function testDevice() {
  buildForDevice();
  return { passed: 1, failed: 0 };
}

function buildSuites(row) {
  if (row.suites.includes('build')) attempt(() => buildRow(row), console.log);
  if (row.suites.includes('device')) attempt(compileForDevice, console.log);
  if (row.suites.includes('kernels')) attempt(buildKernels, console.log);
}

/**
 * Functions that build what testRuntimes will test with the same isLeftOut. What can't be built fails
 * again in its test.
 */
const runtimeBuilds = (isLeftOut) => rowsWithout(isLeftOut).map((row) => () => buildSuites(row));

const SUITES = [
  { name: 'build', test: testBuild },
  { name: 'script', test: testScripts },
  { name: 'samples', test: testSamplesOf },
  { name: 'kernels', test: checkKernels },
  { name: 'device', test: testDevice }
];

/** What one suite comes to under one runtime; what can't be fetched or built fails. */
function testSuite(suite, row) {
  const start = Date.now();
  const count = attempt(
    () => suite.test(row),
    (message) => {
      console.log(message);
      return { passed: 0, failed: 1 };
    }
  );
  const seconds = Math.round((Date.now() - start) / 1000);
  const result = `${count.passed} passed, ${count.failed} failed`;
  console.log(`# ${row.name} ${suite.name}: ${result} (${seconds} s)`);
  return count;
}

/** One count for each of the suites, null where the row hasn't it. */
function testRow(row) {
  let isBuilt = true;
  return SUITES.map((suite) => {
    if (!row.suites.includes(suite.name)) return null;
    // What can't be run has failed, too.
    const count = isBuilt ? testSuite(suite, row) : { passed: 0, failed: 1 };
    if (suite.name === 'build') isBuilt = count.failed === 0;
    return count;
  });
}

function cell(count) {
  if (!count) return '-';
  return count.failed ? `${count.passed}, ${count.failed} failed` : String(count.passed);
}

function printTable(rows) {
  const lines = [['runtime'].concat(SUITES.map((suite) => suite.name))].concat(
    rows.map((row) => [row.name].concat(row.counts.map(cell)))
  );
  lines.forEach((line) => {
    const cells = line.slice(1).map((text) => text.padStart(17));
    console.log(line[0].padEnd(16) + cells.join(''));
  });
}

/**
 * Tests under the runtimes that are named, or under all; prints a table of runtime by suite.
 * isLeftOut(row, name of a suite), if given, tells what needn't be run.
 * @returns {{passed: number, failed: number}} of all
 */
function testRuntimes(names, isLeftOut = () => false) {
  const all = rowsWithout(isLeftOut);
  const unknown = names.find((name) => !all.some((row) => row.name === name));
  if (unknown) {
    const known = all.map((row) => row.name).join(', ');
    throw new Failure(`there is no runtime '${unknown}'; there are ${known}.`);
  }
  const chosen = all.filter((row) => names.length === 0 || names.includes(row.name));
  const rows = chosen.map((row) => ({ name: row.name, counts: testRow(row) }));
  console.log('');
  printTable(rows);
  const counts = rows.map((row) => row.counts.filter((count) => count));
  return sum([].concat.apply([], counts));
}

module.exports = { runtimeBuilds, testRuntimes };
