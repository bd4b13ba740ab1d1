'use strict';

const { countsOf } = require('./counts');
const { SUITE_PATIENCE_MS, run } = require('./run');

/**
 * Runs one of the project's own programs that says last how many cases passed and failed, prints what
 * it says, and gives the counts. variables: of the environment, beside this process's
 */
function runTests(words, variables) {
  const result = run(process.execPath, words, {
    env: Object.assign({}, process.env, variables),
    stdio: ['ignore', 'pipe', 'inherit'],
    timeout: SUITE_PATIENCE_MS
  });
  process.stdout.write(result.stdout + result.stderr);
  return countsOf(result);
}

/**
 * Runs a folder of script tests over the porting layer that a folder holds, as runTests does. words:
 * further ones for run-tap
 */
function runScriptTests(folder, library, words, variables) {
  const command = ['test/run-tap.js', folder, '--library', library];
  return runTests(command.concat(words || []), variables);
}

module.exports = { runScriptTests, runTests };
