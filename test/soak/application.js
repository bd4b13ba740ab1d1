'use strict';

// The sample application under observation: what it hears is counted, and what becomes of the films
// that it plays; at each SIGUSR2 it writes its figures as a line of JSON.

const fs = require('fs');
const quiravent = require('quiravent');

/** Events by name, but for the key by which the observer makes sure that all are heard. */
const heard = { keypress: 0, keyrelease: 0, runtimestatechange: 0, volume: 0 };
const NUDGE = '416';

let listens = false;

const films = { begun: 0, shown: 0, ended: 0, failed: 0 };

function count(name, data) {
  if (name in heard && data !== NUDGE) heard[name] += 1;
}

const InputWorker = quiravent.InputWorker;

/** In place of the module's own, for the application. */
quiravent.InputWorker = function CountingInputWorker(onEvent, onEnd, onError) {
  const listen = (name, data) => {
    listens = true;
    count(name, data);
    onEvent(name, data);
  };
  return new InputWorker(listen, onEnd, onError);
};

const outcomes = { playback_ready: 'shown', playback_error: 'failed', fetch_error: 'failed' };

/** What counts on the way to a listener, which the module keeps for good: one for each listener. */
const counting = new Map();

function countingOf(listener, note) {
  if (!counting.has(listener)) {
    counting.set(listener, (name, value) => {
      note(name);
      listener(name, value);
    });
  }
  return counting.get(listener);
}

function noteEvent(name) {
  if (outcomes[name]) films[outcomes[name]] += 1;
}

function noteEnd() {
  films.ended += 1;
}

/** Counts what is told of a player, on its way to its listeners. */
function watch(player) {
  const register = player.registerListener;
  player.registerListener = (onEvent, onEnd, onError) =>
    register.call(player, countingOf(onEvent, noteEvent), countingOf(onEnd, noteEnd), onError);
}

const getPlayer = quiravent.mediaServices.getPlayer;

/** In place of the module's own, for the application. */
quiravent.mediaServices.getPlayer = (url, bounds, callback) =>
  getPlayer(url, bounds, (error, player) => {
    films[player ? 'begun' : 'failed'] += 1;
    if (player) watch(player);
    callback(error, player);
  });

function tell() {
  if (global.gc) global.gc();
  const count = (folder) => fs.readdirSync(folder).length;
  const figures = {
    listens,
    heard,
    films,
    memory: process.memoryUsage().rss,
    heap: process.memoryUsage().heapUsed,
    threads: count('/proc/self/task'),
    // Less the one by which they are counted.
    descriptors: count('/proc/self/fd') - 1
  };
  fs.writeSync(1, `${JSON.stringify({ figures })}\n`);
}

process.on('SIGUSR2', tell);
quiravent.platformServices.initProperties();
require('../../examples/home');
