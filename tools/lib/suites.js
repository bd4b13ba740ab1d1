'use strict';

// The suites of tests. Each runs by itself and answers how many of its cases passed and failed.

const path = require('path');
const { build } = require('./build');
const { countsOf } = require('./counts');
const { fuzz, targets } = require('./fuzz');
const { checkCounts } = require('./instructions');
const { root, run } = require('./run');
const { testRuntimes } = require('./runtime-suites');
const { SanitizedRun } = require('./sanitizers');
const { runScriptTests } = require('./script-tests');
const { setup } = require('./setup');

/** Runs one of the project's own programs that says last how many cases passed and failed. */
function runTool(words) {
  const result = run(process.execPath, words, { stdio: ['ignore', 'pipe', 'inherit'] });
  process.stdout.write(result.stdout);
  return countsOf(result);
}

function runNative(preset) {
  build(preset);
  return runTool(['test/run-native.js', path.join(root, 'build', preset, 'test')]);
}

/** Runs a folder of script tests over the porting layer in a folder of the build. */
function runScripts(folder, library) {
  build('release');
  return runScriptTests(folder, path.join('build', 'release', library));
}

/** What scripts need of a build: the module, and a device to run it over. */
const SCRIPT_TARGETS = {
  recorder: ['script_tests'],
  '.': ['applications', 'test_media']
};

/** As runScripts, over a build with a sanitizer, each of whose reports counts as a failure. */
function runSanitizedScripts(preset, folder, library) {
  build(preset, SCRIPT_TARGETS[library]);
  const sanitized = new SanitizedRun(preset);
  const place = path.join(root, 'build', preset);
  const variables = Object.assign({ QUIRAVENT_BUILD: place }, sanitized.variables());
  // What the file of the module needs is another thing with a sanitizer.
  const words = ['--without', 'module-file'];
  const count = runScriptTests(folder, path.join(place, library), words, variables);
  const reports = sanitized.reports();
  reports.forEach((text) => process.stdout.write(text));
  count.failed += reports.length;
  return count;
}

/** The suites of a folder of script tests, one under each sanitizer. */
function sanitizedSuites(name, library) {
  return ['asan', 'tsan'].map((preset) => ({
    name: `${name}-${preset}`,
    group: 'sanitizers',
    run: () => runSanitizedScripts(preset, path.join('test', name), library)
  }));
}

/** The module under all runtimes; these, and an emulator, are fetched. */
function runRuntimes() {
  setup(['arm']);
  return testRuntimes([]);
}

/**
 * In the order in which they are run: what fails fast comes first. A suite of a group is run when
 * it, or its group, is asked for; one of the group 'ci' also in continuous integration.
 */
const suites = [
  { name: 'native', run: () => runNative('release') },
  { name: 'script', run: () => runScripts('test/script', 'recorder') },
  { name: 'faults', run: () => runScripts('test/faults', 'recorder') },
  { name: 'cli', run: () => runScripts('test/cli', 'bench') },
  { name: 'device', run: () => runScripts('test/device', '.') },
  { name: 'instructions', run: checkCounts },
  { name: 'native-sanitized', run: () => runNative('asan') },
  { name: 'leaks', run: () => runSanitizedScripts('asan', 'test/leaks', 'recorder') },
  {
    name: 'fuzz',
    group: 'ci',
    run: () => fuzz(targets, { seconds: 5, calls: 50000, seed: 1 })
  },
  { name: 'soak', group: 'ci', run: () => runTool(['tools/soak.js', '--minutes', '2']) },
  ...sanitizedSuites('script', 'recorder'),
  ...sanitizedSuites('faults', 'recorder'),
  ...sanitizedSuites('device', '.'),
  { name: 'native-tsan', group: 'sanitizers', run: () => runNative('tsan') },
  { name: 'runtimes', group: 'ci', run: runRuntimes }
];

module.exports = { suites };
