'use strict';

// Runs a piece of script in a process of its own, for all that ends a process.

const path = require('path');
const { runProgram } = require('../../lib/program');
const { runtime } = require('./build');
const { patience } = require('./pace');

/** A process that isn't over by then is ended; in ms. */
const PATIENCE = patience(60000);

const PRELUDE = `
const recorder = require(${JSON.stringify(path.join(__dirname, 'recorder'))});
const quiravent = require(${JSON.stringify(path.join(__dirname, 'module'))});
const support = (name) => require(${JSON.stringify(__dirname + path.sep)} + name);
const say = (text) => require('fs').writeSync(1, text);
`;

/**
 * Runs source, in which `recorder`, `quiravent`, `say(text)` (which writes to standard output at
 * once) and `support(name)` (a file of this folder) are known. Resolves with { code, signal, stdout,
 * stderr }; code is null when a signal ended the process, and the other way round.
 *
 * watch(output, child), if given, is called at each piece of output, with all of it so far;
 * variables are added to the environment.
 */
function runScript(source, watch, variables) {
  const env = Object.assign({}, process.env, variables);
  const options = { env, patienceMs: PATIENCE, watch };
  return runProgram(runtime, ['--expose-gc', '-e', PRELUDE + source], options).then((run) => ({
    code: run.code,
    signal: run.signal,
    stdout: run.output,
    stderr: run.errors + (run.hanging || '')
  }));
}

/** Expects that source writes `stdout` to standard output and that its process then ends well. */
function says(t, source, stdout, message) {
  return runScript(source).then((result) => {
    t.equal(result.code, 0, result.stderr);
    t.equal(result.stdout, stdout, message);
  });
}

module.exports = { runScript, says };
