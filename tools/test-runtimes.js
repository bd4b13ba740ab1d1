'use strict';

// npm run test:runtimes [-- NAME...]: the script tests under every runtime from that of the set-top
// box to today's, on this processor and on 32-bit ARM in an emulator, and there the desktop
// device's drawing operations. A table comes last, and under it "N passed, M failed". NAME is one
// of the table's, such as x64-20.11.0.

const { checkKernels } = require('./lib/armKernels');
const { Failure, main, run } = require('./lib/run');
const { buildFor, fetchRuntime, writeStarter } = require('./lib/runtimes');
const { setup } = require('./lib/setup');
const path = require('path');

const TESTED = [
  ['x64', '7.10.1'],
  ['x64', '20.11.0'],
  ['x64', '22.11.0'],
  ['x64', '24.11.0'],
  ['x64', '26.10.0'],
  ['armv7l', '14.12.0'],
  ['armv7l', '20.11.0']
];

/** Versions whose headers must compile, beyond those that are tested. */
const BUILT_ONLY = ['8.17.0', '12.22.12', '14.21.3', '16.20.2', '18.20.4'].map((version) => [
  'x64',
  version
]);

function testUnder(runtime) {
  const folder = buildFor(runtime, ['quiravent', 'recorder_addon']);
  const env = Object.assign({}, process.env, {
    QUIRAVENT_BUILD: folder,
    QUIRAVENT_RUNTIME: writeStarter(runtime, folder)
  });
  const words = ['test/run-tap.js', 'test/script', '--library', path.join(folder, 'recorder')];
  const result = run(process.execPath, words, { capture: true, env });
  const found = result.stdout.match(/(\d+) passed, (\d+) failed\s*$/);
  if (result.status !== 0) process.stdout.write(result.stdout + result.stderr);
  return found ? { passed: Number(found[1]), failed: Number(found[2]) } : { passed: 0, failed: 1 };
}

/** What one runtime came to; a build that fails counts as one failure. */
function attempt(name, action) {
  console.log(`# ${name}`);
  try {
    return Object.assign({ name }, action());
  } catch (error) {
    if (!(error instanceof Failure)) throw error;
    console.log(error.message);
    return { name, passed: 0, failed: 1 };
  }
}

function chosen(list, words) {
  return list.filter((pair) => words.length === 0 || words.indexOf(pair.join('-')) >= 0);
}

function printTable(rows) {
  console.log('\nruntime              passed  failed');
  rows.forEach((row) => {
    const cells = [String(row.passed).padStart(8), String(row.failed).padStart(8)];
    console.log(row.name.padEnd(19) + cells.join(''));
  });
}

main((words) => {
  setup(['build', 'arm']);
  const built = chosen(BUILT_ONLY, words).map((pair) =>
    attempt(`${pair.join('-')} (build)`, () => {
      buildFor(fetchRuntime(pair[0], pair[1]), ['quiravent']);
      return { passed: 1, failed: 0 };
    })
  );
  const tested = chosen(TESTED, words).map((pair) =>
    attempt(pair.join('-'), () => testUnder(fetchRuntime(pair[0], pair[1])))
  );
  const kernels = chosen([['armv7l', 'kernels']], words).map((pair) =>
    attempt(pair.join('-'), checkKernels)
  );
  const rows = built.concat(tested, kernels);
  printTable(rows);
  const total = (name) => rows.reduce((sum, row) => sum + row[name], 0);
  console.log(`\n${total('passed')} passed, ${total('failed')} failed`);
  return total('failed') === 0 && total('passed') > 0 ? 0 : 1;
});
