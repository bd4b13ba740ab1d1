'use strict';

// Runs the launcher in a process of its own.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawn, spawnSync } = require('child_process');
const { inSequence } = require('../../lib/concurrently');

const binary = path.resolve(__dirname, '..', '..', '..', 'cli', 'quiravent.js');

/** A launcher that isn't done by then is ended; in ms. */
const PATIENCE = 60000;

/** What the machine may have set, and a test wants to be without. */
const CLEAN = {
  NODE_PATH: '',
  QUIRAVENT_CONFIG: '',
  QUIRAVENT_CONTROL: '',
  UV_THREADPOOL_SIZE: ''
};

class Launcher {
  /** Starts `quiravent WORDS...`; variables are added to the environment. */
  constructor(words, variables, folder) {
    this.output = { stdout: '', stderr: '' };
    this.waiters = [];
    this.child = spawn(process.execPath, [binary].concat(words), {
      cwd: folder,
      env: Object.assign({}, process.env, CLEAN, variables)
    });
    ['stdout', 'stderr'].forEach((name) =>
      this.child[name].setEncoding('utf8').on('data', (text) => {
        this.output[name] += text;
        this.waiters.forEach((waiter) => waiter());
      })
    );
    const timer = setTimeout(() => this.giveUp(), PATIENCE);
    this.ended = new Promise((resolve) => {
      this.child.on('close', (code, signal) => {
        clearTimeout(timer);
        resolve(Object.assign({ code, signal }, this.output));
      });
    });
  }

  /** Resolves once standard output holds a text. */
  waitFor(text) {
    return new Promise((resolve, reject) => {
      const check = () => this.output.stdout.indexOf(text) >= 0 && resolve();
      this.waiters.push(check);
      check();
      this.ended.then(() => reject(new Error(`'${text}' never came; ${this.output.stderr}`)));
    });
  }

  /** Ends it with its application, or at least itself. */
  giveUp() {
    this.kill('SIGTERM');
    const timer = setTimeout(() => this.kill('SIGKILL'), PATIENCE / 10);
    this.ended.then(() => clearTimeout(timer));
  }

  kill(signal) {
    this.child.kill(signal);
  }
}

/** Resolves with { code, signal, stdout, stderr }. */
function launch(words, variables, folder) {
  return new Launcher(words, variables, folder).ended;
}

/**
 * Calls body(folder, write) with a folder outside of this project; write(name, source) makes a file in
 * it and gives its path. Resolves with what body does, when the folder is gone.
 */
function inFolder(body) {
  const folder = fs.realpathSync(fs.mkdtempSync(path.join(os.tmpdir(), 'cli-test-')));
  const remove = () => spawnSync('rm', ['-rf', folder]);
  const write = (name, source) => {
    fs.writeFileSync(path.join(folder, name), source);
    return path.join(folder, name);
  };
  return Promise.resolve()
    .then(() => body(folder, write))
    .then(
      (result) => {
        remove();
        return result;
      },
      (error) => {
        remove();
        throw error;
      }
    );
}

/**
 * Launches each row's words in the folder, one after the other, and compares code and output: [words,
 * code, standard output, standard error], where a pattern has to match and all else to be equal.
 */
function runRows(t, rows, variables, folder) {
  return inSequence(rows, ([words, code, stdout, stderr]) =>
    launch(words, variables, folder).then((result) => {
      t.equal(result.code, code, words.join(' '));
      [
        [result.stdout, stdout],
        [result.stderr, stderr]
      ].forEach(([text, expected]) =>
        expected instanceof RegExp ? t.ok(expected.test(text), text) : t.equal(text, expected)
      );
    })
  );
}

/** The beginning of an application that stands for a device and its application at once. */
const DEVICE = `
const { FakeDevice } = require(${JSON.stringify(path.join(__dirname, 'fake-device'))});
const say = (text) => require('fs').writeSync(1, text + '\\n');
`;

module.exports = { DEVICE, Launcher, inFolder, inSequence, launch, runRows };
