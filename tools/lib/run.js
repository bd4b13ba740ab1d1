'use strict';

const { spawnSync } = require('child_process');
const path = require('path');

const root = path.join(__dirname, '..', '..');

/** A failure that the user can act on: printed without a stack. */
class Failure extends Error {}

/** A test, or a suite of them, that isn't over by then hangs. */
const SUITE_PATIENCE_MS = 30 * 60 * 1000;

/**
 * Runs a program in the project's folder and waits for it. With options.timeout, in ms, it is killed
 * when it isn't over by then, and has failed.
 * @returns {{status: number, stdout: string}} stdout is empty unless options.capture is set
 */
function run(program, parameters, options) {
  const settings = Object.assign({ cwd: root, stdio: 'inherit' }, options);
  if (settings.capture) settings.stdio = ['ignore', 'pipe', 'pipe'];
  settings.maxBuffer = 256 * 1024 * 1024;
  settings.killSignal = 'SIGKILL';
  const child = spawnSync(program, parameters, settings);
  if (child.error && child.error.code === 'ENOENT') {
    return { status: 127, stdout: '', stderr: `${program}: not found` };
  }
  if (child.error && child.error.code === 'ETIMEDOUT') {
    const errors = `${child.stderr || ''}${program} hung: killed after ${settings.timeout / 1000} s\n`;
    return { status: 124, stdout: String(child.stdout || ''), stderr: errors };
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

/** Calls a function; what it answers, or what onFailure makes of the message of its Failure. */
function attempt(body, onFailure) {
  try {
    return body();
  } catch (error) {
    if (!(error instanceof Failure)) throw error;
    return onFailure(error.message);
  }
}

/** Runs the main function of a tool and turns a Failure into one message and a status. */
function main(body) {
  const tell = (message) => {
    process.stderr.write(`quiravent: ${message}\n`);
    return 1;
  };
  const status = attempt(() => body(process.argv.slice(2)), tell);
  if (status) process.exitCode = status;
}

module.exports = { Failure, SUITE_PATIENCE_MS, attempt, main, mustRun, root, run };
