'use strict';

// Talks to a running device over its control socket: one JSON object a line in both directions, one
// answer for each request, in their order.

const net = require('net');
const { ConnectionLost, Failure, Refusal } = require('./failures');

/** For how long a device may think about a request that doesn't wait by itself; in ms. */
const PATIENCE_MS = 10000;

/** What a failed connection means for somebody who looks for a device. */
const reasons = {
  ENOENT: 'there is no such socket; is a device running with --control?',
  ECONNREFUSED: 'nobody listens there; the device has ended, or it is no socket',
  ENOTSOCK: 'that is no socket',
  EACCES: 'this user may not use it'
};

class ControlClient {
  /** Resolves with a client. Rejects with a Failure whose `code` is that of the system's error. */
  static connect(path, patience) {
    return new Promise((resolve, reject) => {
      const socket = net.connect(path);
      socket.once('connect', () => resolve(new ControlClient(socket, path, patience)));
      socket.once('error', (error) => {
        const reason = reasons[error.code] || error.message;
        const failure = new Failure(`no device answers at '${path}': ${reason}`);
        reject(Object.assign(failure, { code: error.code }));
      });
    });
  }

  constructor(socket, path, patience) {
    this.socket = socket;
    this.path = path;
    this.patience = patience || PATIENCE_MS;
    this.pending = [];
    this.received = '';
    this.lastId = 0;
    this.failure = null;
    this.sleepers = [];
    socket.setEncoding('utf8');
    socket.on('data', (text) => this.receive(text));
    socket.on('error', (error) => this.lose(error.message));
    socket.on('close', () => this.lose('it closed the connection'));
  }

  /**
   * Asks for a command. Resolves with the answer's results; rejects with Refusal for an error answer,
   * ConnectionLost, or Failure when no answer came in time. extra: ms by which the command itself
   * waits, beside the usual patience.
   */
  request(command, parameters, extra) {
    if (this.failure) return Promise.reject(this.failure);
    return new Promise((resolve, reject) => {
      const id = (this.lastId += 1);
      const patience = this.patience + (extra || 0);
      const giveUp = () =>
        this.abandon(
          new Failure(`the device at '${this.path}' didn't answer '${command}' in ${patience} ms`)
        );
      this.pending.push({ id, resolve, reject, timer: setTimeout(giveUp, patience) });
      this.socket.write(`${JSON.stringify(Object.assign({ id, command }, parameters))}\n`);
    });
  }

  /** Resolves after some ms; rejects as soon as the connection has ended. */
  sleep(ms) {
    if (this.failure) return Promise.reject(this.failure);
    return new Promise((resolve, reject) => {
      this.sleepers.push({ reject, timer: setTimeout(resolve, ms) });
    });
  }

  close() {
    this.abandon(new ConnectionLost(`the connection to '${this.path}' is closed`));
  }

  receive(text) {
    const lines = (this.received + text).split('\n');
    this.received = lines.pop();
    lines.forEach((line) => this.answer(line));
  }

  answer(line) {
    let answer = null;
    try {
      answer = JSON.parse(line);
    } catch (error) {
      answer = null;
    }
    const next = this.pending[0];
    if (!answer || !next || answer.id !== next.id) {
      const shown = JSON.stringify(line.slice(0, 80));
      this.abandon(new Failure(`the device at '${this.path}' answered ${shown}, out of turn`));
      return;
    }
    this.pending.shift();
    clearTimeout(next.timer);
    if (answer.ok === true) next.resolve(answer);
    else next.reject(new Refusal(String(answer.error)));
  }

  lose(reason) {
    this.abandon(new ConnectionLost(`the device at '${this.path}' is gone: ${reason}`));
  }

  /** Ends the connection: all that wait, and all that come later, fail with its first failure. */
  abandon(failure) {
    this.failure = this.failure || failure;
    this.pending
      .splice(0)
      .concat(this.sleepers.splice(0))
      .forEach((waiting) => {
        clearTimeout(waiting.timer);
        waiting.reject(this.failure);
      });
    this.socket.destroy();
  }
}

module.exports = { ControlClient };
