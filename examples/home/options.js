'use strict';

const path = require('path');

const usage = `node examples/home [OPTION...]

  --demo            press keys by itself, then end; without it, the remote control does
  --still           no motion: one picture for each key
  --time TIME       show this time, as 2025-11-21T20:47, instead of the present one
  --artwork FOLDER  take the pictures from here; by default from build/artwork
  --help            print this and end`;

function timeIn(text) {
  const parts = /^(\d{4})-(\d\d)-(\d\d)T(\d\d):(\d\d)$/.exec(text || '');
  if (!parts) throw new Error(`--time takes a time such as 2025-11-21T20:47, not '${text}'`);
  const [year, month, day, hour, minute] = parts.slice(1).map(Number);
  return new Date(year, month - 1, day, hour, minute);
}

/** Reads the words of the command line. Throws where one of them has no meaning. */
function readOptions(words) {
  const options = {
    artwork: path.join(__dirname, '..', '..', 'build', 'artwork'),
    demo: false,
    help: false,
    now: () => new Date(),
    still: false
  };
  const rest = words.slice();
  while (rest.length > 0) readOption(options, rest.shift(), rest);
  return options;
}

function readOption(options, word, rest) {
  if (word === '--demo' || word === '--still' || word === '--help') {
    options[word.slice(2)] = true;
  } else if (word === '--time') {
    const time = timeIn(rest.shift());
    options.now = () => time;
  } else if (word === '--artwork' && rest.length > 0) {
    options.artwork = path.resolve(rest.shift());
  } else {
    throw new Error(`the option '${word}' is not known, or incomplete.\n\n${usage}`);
  }
}

module.exports = { readOptions, usage };
