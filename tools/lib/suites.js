'use strict';

// The suites of tests. Each runs by itself and answers how many of its cases passed and failed.

const path = require('path');
const { build } = require('./build');
const { buildTargets, fuzz, targets } = require('./fuzz');
const { checkCounts } = require('./instructions');
const { root } = require('./run');
const { runtimeBuilds, testRuntimes } = require('./runtime-suites');
const { SanitizedRun, nativeVariables } = require('./sanitizers');
const { runScriptTests, runTests } = require('./script-tests');

/** Whether continuous integration runs this. */
const isIntegration = Boolean(process.env.CI);

/** The native tests in the build of a preset: the programs that are named, or all. */
const nativeSuite = (name, preset, programs = []) => ({
  name,
  builds: [() => build(preset, programs)],
  run: () => {
    const folder = path.join(root, 'build', preset, 'test');
    return runTests(['test/run-native.js', folder].concat(programs), nativeVariables);
  }
});

/**
 * Tests of code that is another when it is optimised, and chosen by the processor. In continuous
 * integration all the others run under the sanitizers only.
 */
const DRAWING_TESTS = ['graphics_test', 'images_test', 'text_test'];

const buildForScripts = () => build('release', ['script_suites']);

/** A folder of script tests over the porting layer in a folder of the build. */
const scriptSuite = (name, library) => ({
  name,
  builds: [buildForScripts],
  run: () => runScriptTests(path.join('test', name), path.join('build', 'release', library))
});

/** What scripts need of a build: the module, and a device to run it over. */
const SCRIPT_TARGETS = {
  recorder: ['script_tests'],
  '.': ['applications', 'test_media', 'test_multiplexes']
};

/** As runScripts, over a build with a sanitizer, each of whose reports counts as a failure. */
function runSanitizedScripts(preset, folder, library) {
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

/** A folder of script tests under a sanitizer. */
const sanitizedSuite = (name, preset, library) => ({
  builds: [() => build(preset, SCRIPT_TARGETS[library])],
  run: () => runSanitizedScripts(preset, path.join('test', name), library)
});

/** The suites of a folder of script tests, one under each sanitizer. */
function sanitizedSuites(name, library) {
  return ['asan', 'tsan'].map((preset) =>
    Object.assign(
      { name: `${name}-${preset}`, group: 'sanitizers' },
      sanitizedSuite(name, preset, library)
    )
  );
}

const isEmulated = (row) => row.processor !== process.arch;
const majorOf = (version) => version.replace(/^v/, '').split('.')[0];

/** Whether the suites of this process have run under a runtime like that of a row. */
const isTestedHere = (row) => !isEmulated(row) && majorOf(row.version) === majorOf(process.version);

/** In the emulator one runtime shows what is the processor's: that nearest to a set-top box's. */
const EMULATED = 'armv7l-14.12.0';
const isFurther = (row) => isEmulated(row) && row.name !== EMULATED;

/** What continuous integration spares itself of what npm run test:runtimes does. */
const isSpared = (row, suite) => suite === 'script' && (isTestedHere(row) || isFurther(row));

/** The suites under those of the runtimes for which isChosen(row) holds. */
function runtimeSuite(name, isChosen) {
  const isLeftOut = (row, suite) => !isChosen(row) || isSpared(row, suite);
  return {
    name,
    group: 'ci',
    builds: runtimeBuilds(isLeftOut),
    run: () => testRuntimes([], isLeftOut)
  };
}

/**
 * In the order in which they are run: what fails fast comes first, and what needs little of a build.
 * A suite of a group is run when it, or its group, is asked for; one of the group 'ci' also in
 * continuous integration. What a suite needs: `packages`, groups of tools/packages.txt; `builds`,
 * functions in whatever order, any of which may have been called before, by another process too; of
 * one that `isBesides`, in the folder of a suite before it. A suite that `isTimed` has the machine to
 * itself.
 */
const suites = [
  scriptSuite('script', 'recorder'),
  scriptSuite('faults', 'recorder'),
  // Its applications show films and answer keys while time passes: nothing is to run beside them.
  Object.assign(scriptSuite('device', '.'), { isTimed: true }),
  scriptSuite('cli', 'bench'),
  nativeSuite('native', 'release', isIntegration ? DRAWING_TESTS : []),
  { name: 'instructions', run: checkCounts },
  // These wait for much of their time, or keep one processor busy: meanwhile others are built for.
  { name: 'soak', group: 'ci', run: () => runTests(['tools/soak.js', '--minutes', '2']) },
  nativeSuite('native-sanitized', 'asan'),
  Object.assign({ name: 'leaks', isBesides: true }, sanitizedSuite('leaks', 'asan', 'recorder')),
  {
    name: 'fuzz',
    group: 'ci',
    packages: ['fuzz'],
    isBesides: true,
    builds: [() => buildTargets(targets)],
    run: () => fuzz(targets, { seconds: 5, calls: 50000, seed: 1 })
  },
  ...sanitizedSuites('script', 'recorder'),
  ...sanitizedSuites('faults', 'recorder'),
  ...sanitizedSuites('device', '.'),
  Object.assign(nativeSuite('native-tsan', 'tsan'), { group: 'sanitizers' }),
  // These keep all processors busy by themselves.
  runtimeSuite('runtimes', (row) => !isEmulated(row)),
  Object.assign({ packages: ['arm'] }, runtimeSuite('emulated', isEmulated))
];

module.exports = { isIntegration, suites };
