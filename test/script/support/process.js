'use strict';

// Runs a piece of script in a process of its own, for all that ends a process.

const path = require('path');
const { spawn } = require('child_process');
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
  return new Promise((resolve, reject) => {
    const child = spawn(runtime, ['--expose-gc', '-e', PRELUDE + source], {
      env: Object.assign({}, process.env, variables),
      stdio: ['ignore', 'pipe', 'pipe']
    });
    const result = { code: null, signal: null, stdout: '', stderr: '' };
    const timer = setTimeout(() => child.kill('SIGKILL'), PATIENCE);
    child.stdout.setEncoding('utf8').on('data', (text) => {
      result.stdout += text;
      if (watch) watch(result.stdout, child);
    });
    child.stderr.setEncoding('utf8').on('data', (text) => (result.stderr += text));
    child.on('error', reject);
    child.on('close', (code, signal) => {
      clearTimeout(timer);
      resolve(Object.assign(result, { code, signal }));
    });
  });
}

/** Expects that source writes `stdout` to standard output and that its process then ends well. */
function says(t, source, stdout, message) {
  return runScript(source).then((result) => {
    t.equal(result.code, 0, result.stderr);
    t.equal(result.stdout, stdout, message);
  });
}

module.exports = { runScript, says };
