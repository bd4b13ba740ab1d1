'use strict';

const { spawnSync } = require('child_process');
const path = require('path');

const root = path.join(__dirname, '..', '..');

/** A failure that the user can act on: printed without a stack. */
class Failure extends Error {}

/**
 * Runs a program in the project's folder and waits for it.
 * @returns {{status: number, stdout: string}} stdout is empty unless options.capture is set
 */
function run(program, parameters, options) {
  const settings = Object.assign({ cwd: root, stdio: 'inherit' }, options);
  if (settings.capture) settings.stdio = ['ignore', 'pipe', 'pipe'];
  settings.maxBuffer = 256 * 1024 * 1024;
  const child = spawnSync(program, parameters, settings);
  if (child.error && child.error.code === 'ENOENT') {
    return { status: 127, stdout: '', stderr: `${program}: not found` };
  }
  if (child.error) throw child.error;
  return {
    // A signal counts as a failure.
    status: child.status === null ? 1 : child.status,
    stdout: String(child.stdout || ''),
    stderr: String(child.stderr || '')
  };
}

/** As run, but a failure ends the tool. */
function mustRun(program, parameters, options) {
  const result = run(program, parameters, options);
  if (result.status !== 0) {
    process.stderr.write(result.stdout + result.stderr);
    throw new Failure(`'${[program].concat(parameters).join(' ')}' failed (${result.status}).`);
  }
  return result;
}

/** Runs the main function of a tool and turns a Failure into one message and a status. */
function main(body) {
  try {
    const status = body(process.argv.slice(2));
    if (status) process.exitCode = status;
  } catch (error) {
    if (!(error instanceof Failure)) throw error;
    process.stderr.write(`quiravent: ${error.message}\n`);
    process.exitCode = 1;
  }
}

module.exports = { Failure, main, mustRun, root, run };
