'use strict';

// Drives the sample application at random over the launcher and its control channel, and observes
// whether it stays as it is: test/soak/application.js counts what it hears.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawn } = require('child_process');
const { ControlClient } = require('../../cli/lib/control-client');
const { generator, pick } = require('../../test/script/support/random');
const { drawArtwork } = require('../artwork/draw');
const { makeMedia } = require('../media/make');
const { build } = require('./build');
const { mustRun, root } = require('./run');

const KEYS = ['ArrowLeft', 'ArrowRight', 'ArrowUp', 'ArrowDown', 'Enter', 'GoBack'].concat(
  ['ColorF0Red', 'ColorF1Green', 'ColorF2Yellow', 'ColorF3Blue', '1', '2', '3', 'Exit'],
  ['ChannelUp', 'MediaPlayPause', 'AudioVolumeUp', 'PageDown']
);
const STATES = ['paused', 'running', 'low_profile', 'overlay', 'suspended', 'advertising'];

/** Makes an event that lies in a worker's queue come out, and is counted by nobody. */
const NUDGE = 'MediaRecord';
const MOST_NUDGES = 200;

/** Between two figures, in ms. */
const INTERVAL = 1000;

function delay(ms) {
  return new Promise((resolve) => setTimeout(resolve, ms));
}

/** The running application, through the launcher. */
class Subject {
  constructor(folder) {
    this.folder = folder;
    this.socket = path.join(folder, 'control');
    this.figures = [];
    this.waiting = [];
    const options = ['--headless', '--control', this.socket, '--storage', folder, '--expose-gc'];
    const words = ['test/soak/application.js', '--still'];
    this.child = spawn(process.execPath, ['cli/quiravent.js', 'run'].concat(options, words), {
      cwd: root,
      stdio: ['ignore', 'pipe', 'inherit']
    });
    this.end = new Promise((resolve) => this.child.on('close', resolve));
    this.readLines();
  }

  readLines() {
    let rest = '';
    this.child.stdout.setEncoding('utf8').on('data', (text) => {
      const lines = (rest + text).split('\n');
      rest = lines.pop();
      lines.filter((line) => line.startsWith('{"figures"')).forEach((line) => this.take(line));
    });
  }

  take(line) {
    const figures = Object.assign({ time: Date.now() }, JSON.parse(line).figures);
    this.figures.push(figures);
    this.waiting.splice(0).forEach((resolve) => resolve(figures));
  }

  /** Resolves with a client once the device is up. */
  connect() {
    return ControlClient.connect(this.socket).catch((error) => {
      if (this.child.exitCode !== null) throw error;
      return delay(50).then(() => this.connect());
    });
  }

  /** Resolves with the figures of this moment. */
  ask() {
    return new Promise((resolve) => {
      this.waiting.push(resolve);
      process.kill(this.pid, 'SIGUSR2');
    });
  }
}

/** What a viewer and the platform do at random; counts what has to be heard of it. */
class Driver {
  constructor(client, next) {
    this.client = client;
    this.next = next;
    this.state = 'running';
    this.sent = { keypress: 0, keyrelease: 0, runtimestatechange: 0, volume: 0 };
  }

  act() {
    const kind = this.next() % 10;
    if (kind < 7) return this.press(pick(this.next, KEYS));
    return kind < 9 ? this.changeState() : this.sendMessage();
  }

  press(key) {
    this.sent.keypress += 1;
    this.sent.keyrelease += 1;
    return this.client.request('press', { key, hold: this.next() % 30 });
  }

  changeState() {
    this.state = pick(
      this.next,
      STATES.filter((state) => state !== this.state)
    );
    this.sent.runtimestatechange += 1;
    return this.client.request('state', { state: this.state });
  }

  sendMessage() {
    this.sent.volume += 1;
    return this.client.request('message', { name: 'volume', value: String(this.next() % 100) });
  }

  nudge() {
    return this.client.request('press', { key: NUDGE, hold: 0 });
  }
}

/** Resolves with the first figures; the sample application listens only when all is loaded. */
function untilListening(subject, driver) {
  return driver
    .nudge()
    .then(() => subject.ask())
    .then((figures) =>
      figures.listens ? figures : delay(50).then(() => untilListening(subject, driver))
    );
}

function actUntil(end, subject, driver, asked) {
  if (Date.now() >= end) return Promise.resolve();
  const isDue = Date.now() - asked >= INTERVAL;
  const step = isDue ? subject.ask() : driver.act();
  return step.then(() => actUntil(end, subject, driver, isDue ? Date.now() : asked));
}

function isHeard(driver, figures) {
  return Object.keys(driver.sent).every((name) => figures.heard[name] === driver.sent[name]);
}

/** Resolves with the last figures, once everything has been heard or there is no hope. */
function settle(subject, driver, attempts) {
  return driver
    .nudge()
    .then(() => subject.ask())
    .then((figures) =>
      isHeard(driver, figures) || attempts === 0 ? figures : settle(subject, driver, attempts - 1)
    );
}

/** Resolves with { figures, sent, last, status }. */
function observe(subject, options) {
  let driver = null;
  return subject
    .connect()
    .then((client) => {
      driver = new Driver(client, generator(options.seed));
      return client.request('info');
    })
    .then((info) => {
      subject.pid = info.pid;
      return untilListening(subject, driver);
    })
    .then(() => {
      subject.figures = [];
      return actUntil(Date.now() + options.minutes * 60000, subject, driver, 0);
    })
    .then(() => settle(subject, driver, MOST_NUDGES))
    .then((last) => {
      const figures = subject.figures;
      return driver.client
        .request('quit')
        .then(() => subject.end)
        .then((status) => ({ figures, sent: driver.sent, last, status }));
    });
}

/** Resolves with what observe() gives, of a run of some minutes. */
function soak(options) {
  build('release', ['applications']);
  drawArtwork(path.join(root, 'build', 'artwork'));
  makeMedia(path.join(root, 'build', 'media'));
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-soak-'));
  const subject = new Subject(folder);
  const clean = () => mustRun('rm', ['-rf', folder]);
  return observe(subject, options).then(
    (result) => {
      clean();
      return result;
    },
    (error) => {
      subject.child.kill('SIGKILL');
      clean();
      throw error;
    }
  );
}

module.exports = { soak };
