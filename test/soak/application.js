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

/** Plays the film once, to its end or for some time, then again. */
function play() {
  quiravent.mediaServices.getPlayer(film, BOUNDS, (error, player) => {
    if (error) {
      films.failed += 1;
      setTimeout(play, LONGEST);
      return;
    }
    films.begun += 1;
    const unload = () => player.unload();
    const timer = setTimeout(unload, 300 + Math.floor(Math.random() * LONGEST));
    const onEvent = (name) => {
      if (name === 'fetch_ready') player.start();
      if (name === 'playback_error' || name === 'fetch_error') films.failed += 1;
    };
    const onEnd = () => {
      clearTimeout(timer);
      films.ended += 1;
      setImmediate(play);
    };
    player.registerListener(onEvent, onEnd, () => {});
    player.fetch();
  });
}

function tell() {
  if (global.gc) global.gc();
  const count = (folder) => fs.readdirSync(folder).length;
  const figures = {
    listens,
    heard,
    films,
    memory: process.memoryUsage().rss,
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
