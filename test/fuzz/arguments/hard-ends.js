'use strict';

// The calls that end the process, or wait for something from outside, by design. The list is closed:
// whatever else ends a process is a fault. Each of them has a test of its own in test/script.

/** What read() gives; a conversion or an accessor that throws gives undefined. */
function attempt(read) {
  try {
    return read();
  } catch (error) {
    return undefined;
  }
}

const hasText = (value) => attempt(() => `${value}`) !== undefined;

const isObject = (value) =>
  (typeof value === 'object' && value !== null) || typeof value === 'function';
const isMissing = (value) => value === undefined || value === null;

/** By method: which arguments are read as texts, whatever they are. */
const TEXTS = {
  'canvas.drawText': [0],
  'canvas.measureText': [0],
  'canvas.setPorterDuff': [0],
  'persistent.set': [1],
  TunerWorker: [0, 1]
};

/** By method: which arguments are read as rectangles, undefined excepted. */
const RECTANGLES = {
  'canvas.compose': [3],
  'canvas.composeScaled': [1, 2],
  'mediaPlayer.setBounds': [0],
  'dtvplayer.setBounds': [0],
  'mediaServices.getPlayer': [1]
};

/** Methods whose first argument is an object of the module. */
const NATIVES = ['canvas.setFont', 'canvas.compose', 'canvas.composeScaled'];

/** A colour of hexadecimal digits where one of the parts begins with none. */
function isBrokenColor(text) {
  const bytes = Buffer.from(text).toString('latin1').split('\0')[0];
  if (bytes[0] !== '#' || [4, 7, 9].indexOf(bytes.length) < 0) return false;
  const digits = bytes.slice(1);
  const parts = digits.length === 3 ? digits.replace(/[^]/g, '$&$&') : digits;
  return parts.match(/[^]{2}/g).some((part) => !/^[ \t\n\v\f\r]*[+-]?[0-9a-f]/i.test(part));
}

/**
 * What the calls have in common, and which they are; of a call { name, args }. isLive(value): whether
 * it is an object of the module with a native side; state: { channel: whether the pipe is served }.
 */
const HARD_ENDS = [
  {
    name: 'an object that isn’t the module’s where one is expected',
    holds: (call, isLive) =>
      NATIVES.indexOf(call.name) >= 0 && !isMissing(call.args[0]) && !isLive(call.args[0])
  },
  {
    name: 'null as rectangle',
    holds: (call) => (RECTANGLES[call.name] || []).some((index) => call.args[index] === null)
  },
  {
    name: 'a value without a text where a text is read',
    holds: (call) =>
      (TEXTS[call.name] || []).some((index) => !hasText(call.args[index])) ||
      (call.name === 'canvas.drawEllipse' &&
        !hasText(isObject(call.args[0]) ? attempt(() => call.args[0].mode) : call.args[0]))
  },
  {
    name: 'a colour without digits',
    holds: (call) =>
      call.name === 'canvas.setColor' &&
      typeof call.args[0] === 'string' &&
      isBrokenColor(call.args[0])
  },
  {
    name: 'exit while the channel waits for a byte',
    holds: (call, isLive, state) => call.name === 'platformServices.exit' && state.channel
  }
];

function hardEndOf(call, isLive, state) {
  return HARD_ENDS.find((end) => end.holds(call, isLive, state));
}

module.exports = { hardEndOf };
