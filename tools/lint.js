'use strict';

// npm run lint [-- --fix]: formatting of C++ and JavaScript, clang-tidy, types. With --fix the
// formatters write what they would have.

const { configure } = require('./lib/build');
const { main, mustRun, root, run } = require('./lib/run');
const { setup } = require('./lib/setup');

function trackedFiles(patterns) {
  const words = ['ls-files', '--cached', '--others', '--exclude-standard', '--'].concat(patterns);
  return mustRun('git', words, { capture: true })
    .stdout.split('\n')
    .filter((name) => name);
}

function checkFormat(fix) {
  const native = trackedFiles(['*.cpp', '*.h']);
  const scripts = trackedFiles(['*.js', '*.ts', '*.json', ':!package-lock.json']);
  const cpp = ['clang-format-14'].concat(fix ? ['-i'] : ['--dry-run', '-Werror'], native);
  const js = ['npx', '--no-install', 'prettier', fix ? '--write' : '--check'].concat(scripts);
  return [cpp, js];
}

function checkTypes() {
  return ['npx', '--no-install', 'tsc', '--project', 'test/types'];
}

/** clang-tidy over all sources, as part of a build, so that only what has changed is read again. */
function checkFaults() {
  return run('cmake', ['--build', configure('tidy'), '--', '-k', '0']).status === 0;
}

main((words) => {
  setup(['build', 'lint']);
  const checks = checkFormat(words.indexOf('--fix') >= 0).concat([checkTypes()]);
  const failed = checks.filter((check) => run(check[0], check.slice(1)).status !== 0);
  const clean = checkFaults() && failed.length === 0;
  console.log(clean ? 'lint: clean' : `lint: faults found in ${root}`);
  return clean ? 0 : 1;
});
