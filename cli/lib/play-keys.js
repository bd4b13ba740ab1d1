'use strict';

// Presses keys on a running device at the pace of a viewer who watches what they do.

const { Refusal } = require('./failures');

/** An application that draws nothing for a key gets the next one after this time; in ms. */
const PAUSE_MS = 1000;

/** For how long a player is waited for; in ms. */
const PLAYING_MS = 60000;

/** For how long the first frame of an application is waited for; in ms. */
const FIRST_FRAME_MS = 10000;

/**
 * Resolves with the device's answer when a frame after that number has been shown, or with
 * undefined when the time is over.
 */
function waitForFrame(client, after, timeout) {
  return client.request('waitFlush', { after, timeout }, timeout).catch((error) => {
    if (!(error instanceof Refusal)) throw error;
  });
}

/** Resolves when no frame after that number has been shown for so long. */
function waitForRest(client, after, ms) {
  return waitForFrame(client, after, ms).then(
    (shown) => shown && waitForRest(client, shown.frame, ms)
  );
}

/** Resolves when an application that has just been started shows something. */
function waitForFirstFrame(client) {
  return waitForFrame(client, 0, FIRST_FRAME_MS);
}

const actions = {
  press(client, step) {
    const hold = step.hold === null ? {} : { hold: step.hold };
    return client
      .request('frame')
      .then((before) =>
        client
          .request('press', Object.assign({ key: step.key }, hold), step.hold)
          .then((answer) => waitForFrame(client, before.frame, PAUSE_MS).then(() => answer))
      );
  },
  wait: (client, step) => client.sleep(step.ms),
  idle: (client, step) =>
    client.request('frame').then((now) => waitForRest(client, now.frame, step.ms)),
  playing: (client, step) =>
    client.request(
      'waitPlayer',
      { state: 'playing', position: step.ms, timeout: PLAYING_MS },
      PLAYING_MS
    ),
  capture: (client, step) => client.request('capture', { file: step.file }),
  quit: (client) => client.request('quit')
};

/**
 * Takes the steps (see key-steps.js) one after the other; a key comes once the frame that followed
 * the one before has been shown. onStep(step) is called before each, which begins once what it
 * returns has resolved. Resolves with the device's answers.
 */
function playKeys(client, steps, onStep) {
  const answers = [];
  return steps
    .reduce(
      (before, step) =>
        before
          .then(() => onStep(step))
          .then(() => actions[step.action](client, step))
          .then((answer) => answers.push(answer)),
      Promise.resolve()
    )
    .then(() => answers);
}

module.exports = { playKeys, waitForFirstFrame };
