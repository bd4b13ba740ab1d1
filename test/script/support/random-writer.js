'use strict';

// Writes random messages to a pipe, as they come and without regard to other writers:
// node random-writer.js PIPE SEED COUNT

const fs = require('fs');
const { generator } = require('./random');

const LONGEST = 5000;
const LINE_FEED = 10;

/** 1 to 5000 bytes, short ones as often as long ones; one in four holds no line feed. */
function randomMessage(next) {
  const length = 1 + (next() % (next() % 2 ? LONGEST : 40));
  const bytes = Buffer.alloc(length);
  const lineFeeds = next() % 4 !== 0;
  const texts = next() % 2 === 0;
  for (let index = 0; index < length; index += 1) {
    const byte = texts ? 32 + (next() % 64) : next() % 256;
    bytes[index] = byte === LINE_FEED && !lineFeeds ? 0 : byte;
    if (lineFeeds && next() % 16 === 0) bytes[index] = LINE_FEED;
  }
  return bytes;
}

/** Writes a message; false when the pipe is full. */
function write(descriptor, message) {
  try {
    fs.writeSync(descriptor, message, 0, message.length);
    return true;
  } catch (error) {
    if (error.code !== 'EAGAIN') throw error;
    return false;
  }
}

/** Resolves once `count` messages have been written to a non-blocking descriptor. */
function writeRandomMessages(descriptor, seed, count) {
  const next = generator(seed);
  let left = count;
  let message = randomMessage(next);
  return new Promise((resolve, reject) => {
    const turn = () => {
      try {
        while (left > 0 && write(descriptor, message)) {
          message = randomMessage(next);
          left -= 1;
        }
      } catch (error) {
        return reject(error);
      }
      if (left > 0) setImmediate(turn);
      else resolve();
      return undefined;
    };
    turn();
  });
}

module.exports = { writeRandomMessages };

if (require.main === module) {
  const pipe = fs.openSync(process.argv[2], fs.constants.O_WRONLY | fs.constants.O_NONBLOCK);
  writeRandomMessages(pipe, Number(process.argv[3]), Number(process.argv[4])).catch((error) => {
    process.stderr.write(`${error.stack}\n`);
    process.exitCode = 1;
  });
}
