'use strict';

// The control channel of an application that the launcher runs: the one that the user named, or a
// private one where the launcher itself needs it.

const fs = require('fs');
const net = require('net');
const os = require('os');
const path = require('path');
const { ControlClient } = require('./control-client');
const { Failure } = require('./failures');

/** How often a device that is still starting is tried; in ms. */
const RETRY_MS = 20;

/** Meanings of a failed connection that pass when the device has started. */
const PASSING = ['ENOENT', 'ECONNREFUSED'];

function remove(removal, file) {
  try {
    removal(file);
  } catch (error) {
    // The device has removed it already, as it should.
    if (error.code !== 'ENOENT') throw error;
  }
}

function isSocket(file) {
  try {
    return fs.lstatSync(file).isSocket();
  } catch (error) {
    return false;
  }
}

/**
 * Resolves with what is at a path: 'device' when somebody listens, 'stale' for the socket that a
 * killed device left, 'other' for anything else, nothing included.
 */
function probe(file) {
  return new Promise((resolve) => {
    const socket = net.connect(file);
    socket.once('connect', () => {
      socket.destroy();
      resolve('device');
    });
    socket.once('error', (error) => {
      resolve(error.code === 'ECONNREFUSED' && isSocket(file) ? 'stale' : 'other');
    });
  });
}

class ControlChannel {
  /** file: the user's own; none: a private one is made, in a folder of its own. */
  constructor(file) {
    this.folder = file ? null : fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-'));
    this.path = file || path.join(this.folder, 'control');
    this.isClosed = false;
    this.retry = null;
    this.giveUp = null;
  }

  /** Rejects with a Failure when another device listens already. */
  open() {
    return probe(this.path).then((found) => {
      if (found === 'device') {
        throw new Failure(
          `run: another device listens at '${this.path}'; end it, or name another path with --control`
        );
      }
    });
  }

  /** Resolves with a client, at the earliest when the device is up; with null if close() comes first. */
  connectWhenUp() {
    if (this.isClosed) return Promise.resolve(null);
    return ControlClient.connect(this.path).catch((error) => {
      if (PASSING.indexOf(error.code) < 0) throw error;
      return this.pause().then(() => this.connectWhenUp());
    });
  }

  pause() {
    return new Promise((resolve) => {
      this.giveUp = resolve;
      this.retry = setTimeout(resolve, RETRY_MS);
    });
  }

  /** After the application's end: leaves nothing behind. */
  close() {
    this.isClosed = true;
    clearTimeout(this.retry);
    if (this.giveUp) this.giveUp();
    return probe(this.path).then((found) => {
      if (found === 'stale') remove(fs.unlinkSync, this.path);
      if (this.folder) remove(fs.rmdirSync, this.folder);
    });
  }
}

module.exports = { ControlChannel };
