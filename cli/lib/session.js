'use strict';

// One run of an application, with all that the launcher does meanwhile: keys, the time limit, the
// last picture.

const { ControlClient } = require('./control-client');
const { ConnectionLost, Failure } = require('./failures');
const { nameOf } = require('./key-steps');
const { playKeys, waitForFirstFrame } = require('./play-keys');

/** For how long a device that is about to be ended may take for an answer; in ms. */
const LAST_WORDS_MS = 2000;

function warn(text) {
  process.stderr.write(`quiravent: run: ${text}\n`);
}

class Session {
  /**
   * channel: null where neither the user nor the launcher needs one; steps: of --keys, may be empty;
   * lastPicture: the file for it, or undefined.
   */
  constructor(application, channel, steps, lastPicture) {
    this.application = application;
    this.channel = channel;
    this.remaining = steps.slice();
    this.lastPicture = lastPicture;
    this.client = null;
    this.failed = false;
  }

  /** Presses the keys. Resolves in any case; what goes wrong is told, and ends the application. */
  playKeys() {
    const steps = this.remaining.slice();
    if (steps.length === 0) return Promise.resolve();
    return this.channel
      .connectWhenUp()
      .then((client) => client && this.playOver(client, steps))
      .catch((error) => this.handlePlayFailure(error));
  }

  playOver(client, steps) {
    this.client = client;
    const onStep = (step) => {
      this.remaining.shift();
      if (step.action === 'quit')
        return this.takeLastPicture().then(() => this.application.expectEnd());
      return undefined;
    };
    return waitForFirstFrame(client)
      .then(() => playKeys(client, steps, onStep))
      .then(() => client.close());
  }

  handlePlayFailure(error) {
    if (!(error instanceof Failure)) throw error;
    // Its process has ended, which its exit tells.
    if (error instanceof ConnectionLost) return undefined;
    warn(`--keys: ${error.message}`);
    this.failed = true;
    this.remaining = [];
    return this.finish();
  }

  /**
   * The device writes its last picture itself at an orderly exit. The end by a signal is none: then
   * it is taken before.
   */
  takeLastPicture() {
    if (!this.lastPicture) return Promise.resolve();
    return this.ask('capture', { file: this.lastPicture }).catch((error) => {
      warn(`--screenshot: ${error.message}`);
    });
  }

  ask(command, parameters) {
    return ControlClient.connect(this.channel.path, LAST_WORDS_MS).then((client) => {
      const answered = client.request(command, parameters);
      const close = () => client.close();
      answered.then(close, close);
      return answered;
    });
  }

  /** Ends the application in an orderly way; its end by SIGTERM then counts as success. */
  finish() {
    this.application.forbidRestart();
    return this.takeLastPicture()
      .then(() => {
        this.application.expectEnd();
        return this.ask('quit');
      })
      .catch((error) => {
        if (!(error instanceof Failure)) throw error;
        // An application that hasn't got so far as to have a device is ended without its help.
        this.application.signal('SIGTERM');
      });
  }

  /** Ends the application by a signal that the launcher got. */
  interrupt(signal) {
    this.application.forbidRestart();
    return this.takeLastPicture().then(() => this.application.signal(signal));
  }

  /** After the application's end. */
  close() {
    if (this.client) this.client.close();
    if (this.remaining.length > 0) {
      const names = this.remaining.map(nameOf).join(', ');
      warn(`the application ended before all keys were pressed; left: ${names}`);
    }
    return this.channel ? this.channel.close() : Promise.resolve();
  }
}

module.exports = { Session };
