'use strict';

// Runs a script on the desktop device in a process of its own, controlled by its control channel.

const net = require('net');
const path = require('path');
const { spawn } = require('child_process');
const { modulePath } = require('../../script/support/build');
const { newFolder } = require('./files');

/** A process that isn't over by then is ended; in ms. */
const PATIENCE = 60000;

/** Pressed to wake a worker that was away when an event came; its events are left out. */
const NUDGE = 'MediaRecord';
const NUDGE_CODE = '416';

const PRELUDE = `
const say = (text) => require('fs').writeSync(1, text + '\\n');
const quiravent = require(${JSON.stringify(modulePath)});
const { platformServices } = quiravent;
`;

function delay(ms) {
  return new Promise((resolve) => setTimeout(resolve, ms));
}

/** Calls back with each whole line that a stream brings. */
function onLines(stream, use) {
  let rest = '';
  stream.setEncoding('utf8').on('data', (text) => {
    const lines = (rest + text).split('\n');
    rest = lines.pop();
    lines.forEach(use);
  });
}

class Control {
  constructor(socket) {
    this.socket = socket;
    this.waiting = [];
    onLines(socket, (line) => this.waiting.shift()(JSON.parse(line)));
    socket.on('error', () => {});
  }

  ask(command, parameters) {
    return new Promise((resolve) => {
      this.waiting.push(resolve);
      this.socket.write(JSON.stringify(Object.assign({ command }, parameters)) + '\n');
    });
  }
}

class Application {
  constructor(t, source, variables) {
    // In this order: the folder goes when nobody writes into it any more.
    t.teardown(() => {
      this.child.kill('SIGKILL');
      return this.end;
    });
    this.folder = newFolder(t);
    this.lines = [];
    const env = {
      QUIRAVENT_DISPLAY: 'headless',
      QUIRAVENT_CONTROL: 'control',
      QUIRAVENT_STORAGE: 'store'
    };
    this.child = spawn(process.execPath, ['-e', PRELUDE + source], {
      cwd: this.folder,
      env: Object.assign({}, process.env, env, variables),
      stdio: ['ignore', 'pipe', 'inherit']
    });
    onLines(this.child.stdout, (line) => this.lines.push(line));
    const timer = setTimeout(() => this.child.kill('SIGKILL'), PATIENCE);
    /** Resolves with { code, signal } when the process is over. */
    this.end = new Promise((resolve) => {
      this.child.on('close', (code, signal) => {
        clearTimeout(timer);
        resolve({ code, signal });
      });
    });
  }

  file(name) {
    return path.join(this.folder, name);
  }

  /** Resolves with this once the device is there and can be asked. */
  connect() {
    return new Promise((resolve, reject) => {
      const socket = net.connect(this.file('control'));
      socket.once('connect', () => {
        this.control = new Control(socket);
        resolve(this);
      });
      socket.once('error', reject);
    }).catch(() => delay(20).then(() => this.connect()));
  }

  ask(command, parameters) {
    return this.control.ask(command, parameters);
  }

  /** Rejects where the device refuses. */
  request(command, parameters) {
    return this.ask(command, parameters).then((answer) => {
      if (!answer.ok) throw new Error(answer.error);
      return answer;
    });
  }

  /** Asks until the answer is so; resolves with it. */
  askUntil(command, parameters, isSo) {
    return this.ask(command, parameters).then((answer) =>
      isSo(answer) ? answer : this.askUntil(command, parameters, isSo)
    );
  }

  press(key) {
    return this.ask('press', { key, hold: 0 });
  }

  /** What the script has said, but for the nudges. */
  said() {
    return this.lines.filter((line) => !line.endsWith(' ' + NUDGE_CODE));
  }

  /**
   * Resolves once isReached() is true. An event that comes while its worker is away lies until the
   * next one comes, so keys are pressed until then.
   */
  nudgeUntil(isReached) {
    if (isReached()) return Promise.resolve(this);
    return this.press(NUDGE).then(() => this.nudgeUntil(isReached));
  }

  /** Resolves when the script has said so many lines: what it said. */
  until(count) {
    return this.nudgeUntil(() => this.said().length >= count).then(() => this.said());
  }

  /** Resolves with this when the script has been told of a key. */
  untilListening() {
    return this.nudgeUntil(() => this.lines.some((line) => line.endsWith(' ' + NUDGE_CODE)));
  }
}

module.exports = { Application };
