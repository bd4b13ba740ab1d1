'use strict';

// The sample application under observation: what it hears is counted, a film plays over and over
// beside it, and at each SIGUSR2 it writes its figures as a line of JSON. The film is the last word of
// the command line; the other words are the application's.

const fs = require('fs');
const quiravent = require('quiravent');

const film = process.argv.pop();

/** Events by name, but for the key by which the observer makes sure that all are heard. */
const heard = { keypress: 0, keyrelease: 0, runtimestatechange: 0, volume: 0 };
const NUDGE = '416';

let listens = false;

const films = { begun: 0, ended: 0, failed: 0 };

/** How long one film is played at most, in ms. */
const LONGEST = 1500;

/** How long the end of a film's listener is waited for, in ms. */
const END_PATIENCE = 5000;

const BOUNDS = { x: 800, y: 400, w: 320, h: 180 };

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

// The module keeps the listeners of a player for good, by design: these are the same for all films,
// so that nothing else is kept with them.

let player = null;
let timer = null;

/** The end of a film's listener may not be told where it coincides with an event, by design. */
function unload() {
  player.unload();
  timer = setTimeout(play, END_PATIENCE);
}

function onFilmEvent(name) {
  if (name === 'fetch_ready') player.start();
  if (name === 'playback_error' || name === 'fetch_error') films.failed += 1;
}

function onFilmEnd() {
  clearTimeout(timer);
  films.ended += 1;
  setImmediate(play);
}

function ignore() {}

function onPlayer(error, made) {
  if (error) {
    films.failed += 1;
    setTimeout(play, LONGEST);
    return;
  }
  films.begun += 1;
  player = made;
  clearTimeout(timer);
  timer = setTimeout(unload, 300 + Math.floor(Math.random() * LONGEST));
  player.registerListener(onFilmEvent, onFilmEnd, ignore);
  player.fetch();
}

/** Plays the film, to its end or for some time, over and over. */
function play() {
  quiravent.mediaServices.getPlayer(film, BOUNDS, onPlayer);
}

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
play();
require('../../examples/home');
