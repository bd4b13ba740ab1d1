'use strict';

// The application's process: started, started again when it asks for that, ended when asked.

const { spawn } = require('child_process');
const os = require('os');
const { Failure } = require('./failures');

/** The exit status by which an application asks to be started again. */
const RESTART = 83;

/** An application that was asked to end and hasn't by then is killed; in ms. */
const GRACE_MS = 5000;

const TERMINATED = 128 + os.constants.signals.SIGTERM;

/** A process's exit status as a shell tells it. */
function statusOf(code, signal) {
  return signal === null ? code : 128 + os.constants.signals[signal];
}

class Application {
  /** words: the runtime's options, the script and its arguments. */
  constructor(words, environment) {
    this.words = words;
    this.environment = environment;
    this.child = null;
    this.mayRestart = true;
    this.isExpected = false;
    this.grace = null;
  }

  /** Runs it until it has ended for good; resolves with its exit status. */
  run() {
    return this.runOnce().then((status) => {
      if (status === RESTART && this.mayRestart) return this.run();
      clearTimeout(this.grace);
      return this.isExpected && status === TERMINATED ? 0 : status;
    });
  }

  runOnce() {
    return new Promise((resolve, reject) => {
      // In a process group of its own: a Ctrl-C in the terminal then reaches the launcher alone,
      // and the application gets it from there exactly once.
      const child = spawn(process.execPath, this.words, {
        detached: true,
        env: this.environment,
        stdio: 'inherit'
      });
      this.child = child;
      child.on('error', (error) =>
        reject(new Failure(`run: '${process.execPath}' can't be started: ${error.message}`))
      );
      child.on('exit', (code, signal) => {
        this.child = null;
        resolve(statusOf(code, signal));
      });
    });
  }

  /** Sends a signal to the application and the processes that it started, as a terminal would. */
  signal(name) {
    if (!this.child) return;
    try {
      process.kill(-this.child.pid, name);
    } catch (error) {
      // It has just ended; its exit is about to be reported.
      if (error.code !== 'ESRCH') throw error;
    }
  }

  /** From now on it isn't started again. */
  forbidRestart() {
    this.mayRestart = false;
  }

  /** From now on its end by SIGTERM is what the user asked for, and counts as success. */
  expectEnd() {
    this.forbidRestart();
    this.isExpected = true;
    if (this.grace || !this.child) return;
    this.grace = setTimeout(() => {
      process.stderr.write(
        `quiravent: run: the application was asked to end, hasn't in ${GRACE_MS} ms, and is killed\n`
      );
      this.signal('SIGKILL');
    }, GRACE_MS);
  }
}

module.exports = { Application };
