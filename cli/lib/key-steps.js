'use strict';

// The small language in which a viewer's hand is written down: "ArrowDown*3,wait:500,Enter:1200".

const path = require('path');

/** More would be a slip of the finger. */
const MOST_TIMES = 1000;
const MOST_MS = 600000;

function milliseconds(argument) {
  const number = /^\d+$/.test(argument) ? Number(argument) : NaN;
  return number <= MOST_MS ? number : undefined;
}

function timed(action, argument) {
  const ms = milliseconds(argument);
  return ms === undefined ? undefined : { action, ms };
}

/** The words that are no keys: each gives its step, or undefined for an argument it can't take. */
const words = {
  wait: (argument) => timed('wait', argument),
  idle: (argument) => timed('idle', argument),
  playing: (argument) => timed('playing', argument),
  capture: (argument) =>
    argument ? { action: 'capture', file: path.resolve(argument) } : undefined,
  quit: (argument) => (argument === undefined ? { action: 'quit' } : undefined)
};

function press(word) {
  const parts = /^(.+?)(?::(\d+))?(?:\*(\d+))?$/.exec(word);
  if (!parts) return undefined;
  const times = parts[3] === undefined ? 1 : Number(parts[3]);
  const hold = parts[2] === undefined ? null : milliseconds(parts[2]);
  if (hold === undefined || times < 1 || times > MOST_TIMES) return undefined;
  return new Array(times).fill({ action: 'press', key: parts[1], hold });
}

function readWord(word) {
  const parts = /^([a-z]+)(?::(.*))?$/.exec(word);
  if (!parts || !words.hasOwnProperty(parts[1])) return press(word);
  const step = words[parts[1]](parts[2]);
  return step && [Object.assign({ word }, step)];
}

/**
 * The steps that words stand for: { action: 'press', key, hold (ms, or null for the device's own) },
 * { action: 'wait', ms }, { action: 'idle', ms }, { action: 'playing', ms (a position) },
 * { action: 'capture', file (absolute) }, { action: 'quit' }. Undefined when one of the words can't be
 * understood.
 */
function readSteps(list) {
  const steps = list.map(readWord);
  return steps.indexOf(undefined) < 0 ? [].concat.apply([], steps) : undefined;
}

/** A step as it is told to the user. */
function nameOf(step) {
  return step.action === 'press' ? step.key : step.word;
}

const notes = `A key is given by its name, alias or decimal code (see quiravent keys):
  ArrowDown        press and release
  ArrowDown*3      three times
  ArrowDown:1500   held for 1500 ms, with the repeated presses of a remote
  wait:500         no key: 500 ms more
  idle:500         no key: until no frame has been shown for 500 ms
  playing:3000     no key: until a player plays at 3000 ms or later
  capture:FILE     no key: save the screen as a PNG file
  quit             no key: end the application
A key comes once the frame that followed the one before has been shown, or after a second.`;

module.exports = { readSteps, nameOf, notes };
