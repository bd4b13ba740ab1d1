'use strict';

// The kinds of values that options and operands take. Each tells in words what is allowed, and reads
// a text; read() gives undefined for one that isn't allowed.

const fs = require('fs');
const path = require('path');
const { readSteps } = require('./key-steps');

/** The longest time for which the runtime's timers can wait. */
const MOST_SECONDS = 2147483;

/** What fits into a socket address, without the byte that ends it. */
const MOST_SOCKET_BYTES = 107;

const text = {
  allowed: 'a text',
  read: (word) => word
};

const file = {
  allowed: 'the path of a file',
  read: (word) => (word === '' ? undefined : path.resolve(word))
};

const folder = {
  allowed: 'the path of a folder',
  read: file.read
};

const existingFile = {
  allowed: 'the path of a file that exists',
  read(word) {
    const isFile = word !== '' && fs.existsSync(word) && fs.statSync(word).isFile();
    return isFile ? path.resolve(word) : undefined;
  }
};

const application = {
  allowed: 'a script, or a folder with an index.js',
  /** { path: as named, made absolute; main: the file that the runtime will find there }. */
  read(word) {
    const named = path.resolve(word);
    try {
      return { path: named, main: require.resolve(named) };
    } catch (error) {
      return undefined;
    }
  }
};

const socket = {
  allowed: `the path of a Unix-domain socket, at most ${MOST_SOCKET_BYTES} bytes when absolute`,
  read(word) {
    const absolute = path.resolve(word);
    return word !== '' && Buffer.byteLength(absolute) <= MOST_SOCKET_BYTES ? absolute : undefined;
  }
};

const seconds = {
  allowed: `a number of seconds above 0, at most ${MOST_SECONDS}`,
  read(word) {
    const number = /^(\d+\.?\d*|\.\d+)$/.test(word) ? Number(word) : NaN;
    return number > 0 && number <= MOST_SECONDS ? number : undefined;
  }
};

const number = {
  allowed: 'a number from 1 on',
  read: (word) => (/^[1-9]\d{0,8}$/.test(word) ? Number(word) : undefined)
};

/** One of some words. */
function oneOf(words) {
  return {
    allowed: words.join(', '),
    read: (word) => (words.indexOf(word) >= 0 ? word : undefined)
  };
}

const key = {
  allowed:
    'the name, alias or decimal code of a key, with :MS to hold it and *N to repeat it, ' +
    'or wait:MS, idle:MS, playing:MS, capture:FILE, quit',
  read: (word) => readSteps([word])
};

const keys = {
  allowed: `words with commas between them, each ${key.allowed}`,
  read: (words) => readSteps(words.split(',').map((word) => word.trim()))
};

module.exports = {
  text,
  file,
  folder,
  existingFile,
  application,
  socket,
  seconds,
  number,
  oneOf,
  key,
  keys
};
