'use strict';

// The control channel of a device that has nothing but that: for tests of the verbs that talk to
// one, and within applications that the launcher runs.

const fs = require('fs');
const net = require('net');

const codes = { ArrowDown: 40, Enter: 13, GoBack: 461 };
const states = ['paused', 'running', 'low_profile', 'overlay', 'suspended', 'advertising'];

function refuse(text) {
  throw new Error(text);
}

class FakeDevice {
  /**
   * handlers: by command, in place of the device's own; handler(request, device) gives results or a
   * promise of them, throws for an error answer, and gives null for no answer at all.
   */
  constructor(handlers) {
    this.handlers = Object.assign({}, FakeDevice.handlers, handlers);
    this.requests = [];
    this.frame = 0;
    this.state = 'running';
    this.waiting = [];
    this.server = net.createServer((socket) => this.serve(socket));
    this.sockets = new Set();
  }

  listen(path) {
    return new Promise((resolve) => this.server.listen(path, () => resolve(this)));
  }

  close() {
    this.sockets.forEach((socket) => socket.destroy());
    return new Promise((resolve) => this.server.close(resolve));
  }

  flush() {
    this.frame += 1;
    this.waiting.splice(0).forEach((check) => check());
  }

  /** Resolves with the number of the first frame after one. */
  frameAfter(after) {
    return new Promise((resolve) => {
      const check = () => (this.frame > after ? resolve(this.frame) : this.waiting.push(check));
      check();
    });
  }

  /** The requests without their ids, as [command, parameters]. */
  sequence() {
    return this.requests.map((request) => {
      const parameters = Object.assign({}, request);
      delete parameters.id;
      delete parameters.command;
      return [request.command, parameters];
    });
  }

  serve(socket) {
    let received = '';
    let last = Promise.resolve();
    this.sockets.add(socket);
    socket.setEncoding('utf8');
    socket.on('error', () => {});
    socket.on('close', () => this.sockets.delete(socket));
    socket.on('data', (text) => {
      const lines = (received + text).split('\n');
      received = lines.pop();
      lines.forEach((line) => {
        last = last.then(() => this.answer(JSON.parse(line), socket));
      });
    });
  }

  answer(request, socket) {
    this.requests.push(request);
    const reply = (answer) => socket.write(`${JSON.stringify(answer)}\n`);
    return Promise.resolve()
      .then(() => this.handlers[request.command](request, this, socket))
      .then((results) => results && reply(Object.assign({ id: request.id, ok: true }, results)))
      .catch((error) => reply({ id: request.id, ok: false, error: error.message }));
  }
}

// What it tells of itself: players, captions, faults, tuner and signal.
Object.assign(FakeDevice, require('./fake-device.json'));

FakeDevice.handlers = {
  press: (request) =>
    codes[request.key] ? { code: codes[request.key] } : refuse(`unknown key '${request.key}'`),
  frame: (request, device) => ({ frame: device.frame }),
  waitFlush(request, device) {
    const shown = device.frameAfter(request.after).then((frame) => ({ frame }));
    const over = new Promise((resolve, reject) =>
      setTimeout(() => reject(new Error('no frame in time')), request.timeout).unref()
    );
    return Promise.race([shown, over]);
  },
  capture(request, device) {
    fs.writeFileSync(request.file, 'picture');
    return { file: request.file, frame: device.frame, width: 1280, height: 720 };
  },
  state(request, device) {
    const wanted = request.state === undefined ? device.state : request.state;
    if (states.indexOf(wanted) < 0) refuse(`unknown state '${wanted}'; allowed: ${states.join()}`);
    device.state = wanted;
    return { state: wanted };
  },
  message: () => ({}),
  players: () => ({ players: FakeDevice.players }),
  waitPlayer: () => ({ player: FakeDevice.players[0] }),
  haltPlayer: () => ({}),
  captions: () => ({ players: FakeDevice.captions }),
  faults: () => ({ faults: FakeDevice.faults }),
  tuner: () => ({ tuner: FakeDevice.tuner }),
  signal: () => ({ signal: FakeDevice.signal }),
  keys: () => ({
    keys: Object.keys(codes).map((name) => ({ name, code: codes[name], aliases: [`VK_${name}`] }))
  }),
  quit() {
    process.nextTick(() => process.kill(process.pid, 'SIGTERM'));
    return {};
  }
};

module.exports = { FakeDevice };
