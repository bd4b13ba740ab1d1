'use strict';

// The threads and descriptors of this process, as the kernel tells them.

const fs = require('fs');
const { patience } = require('./pace');

const TASKS = '/proc/self/task';

/** After which a wait is given up, in ms. */
const PATIENCE = patience(10000);

/** What read(id) gives for each thread that is still there. */
function eachThread(read) {
  const results = [];
  fs.readdirSync(TASKS).forEach((id) => {
    try {
      results.push(read(id));
    } catch (error) {
      // It ended after the folder was read.
      if (error.code !== 'ENOENT' && error.code !== 'ESRCH') throw error;
    }
  });
  return results;
}

function threadNames() {
  return eachThread((id) => fs.readFileSync(`${TASKS}/${id}/comm`, 'utf8').trim());
}

/** Whether the thread sleeps that a folder of the kernel tells of. */
function isAsleep(folder) {
  const stat = fs.readFileSync(`${folder}/stat`, 'utf8');
  return stat.slice(stat.lastIndexOf(')') + 2, stat.lastIndexOf(')') + 3) === 'S';
}

function othersAreAsleep() {
  return eachThread((id) => Number(id) === process.pid || isAsleep(`${TASKS}/${id}`)).every(
    Boolean
  );
}

/**
 * Resolves once condition() holds, which is asked every millisecond: asking without a pause would take
 * the processor from those who are to bring it about. Rejects if it throws.
 */
function poll(condition) {
  return new Promise((resolve, reject) => {
    const look = () => {
      try {
        if (condition()) resolve();
        else setTimeout(look, 1);
      } catch (error) {
        reject(error);
      }
    };
    setImmediate(look);
  });
}

/** Resolves after a turn of the loop, in which is heard what threads have signalled before. */
function turn() {
  return new Promise((resolve) => setImmediate(() => setImmediate(resolve)));
}

/**
 * Resolves once all threads but this one sleep, which those of open workers do only in their wait.
 * What a worker does by itself, it has then done.
 */
function quiet() {
  const end = Date.now() + PATIENCE;
  return poll(() => {
    if (Date.now() > end) throw new Error('The threads of the process don’t come to rest');
    return othersAreAsleep();
  }).then(turn);
}

function descriptorCount() {
  return fs.readdirSync('/proc/self/fd').length;
}

module.exports = { threadNames, turn, isAsleep, poll, quiet, descriptorCount };
