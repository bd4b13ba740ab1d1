'use strict';

const { numberIn } = require('./counts');
const { run } = require('./run');

/**
 * Runs a folder of script tests over the porting layer that a folder holds, and prints what they
 * say. words: further ones for run-tap; variables: of the environment, beside this process's.
 */
function runScriptTests(folder, library, words, variables) {
  const command = ['test/run-tap.js', folder, '--library', library].concat(words || []);
  const result = run(process.execPath, command, {
    env: Object.assign({}, process.env, variables),
    stdio: ['ignore', 'pipe', 'inherit']
  });
  process.stdout.write(result.stdout);
  const count = {
    passed: numberIn(result.stdout, /(\d+) passed, \d+ failed\s*$/),
    failed: numberIn(result.stdout, /\d+ passed, (\d+) failed\s*$/)
  };
  if (result.status !== 0 && count.failed === 0) count.failed = 1;
  return count;
}

module.exports = { runScriptTests };
