'use strict';

const { countsOf } = require('./counts');
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
  return countsOf(result);
}

module.exports = { runScriptTests };
