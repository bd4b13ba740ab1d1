'use strict';

// Runs the programs that tests are.

const fs = require('fs');
const { spawn, spawnSync } = require('child_process');

/** The numbers of the processes that one has started and that haven't ended. */
function childrenOf(id) {
  const lists = fs.readdirSync(`/proc/${id}/task`).map((thread) => {
    return fs.readFileSync(`/proc/${id}/task/${thread}/children`, 'utf8');
  });
  return lists.join('').split(' ').filter(Boolean).map(Number);
}

/** The numbers of a process and of all that it, and they, have started. */
function familyOf(id) {
  try {
    return [id].concat(...childrenOf(id).map(familyOf));
  } catch (error) {
    return [id]; // It has ended meanwhile.
  }
}

/** Where the threads of a process stand, as the debugger has it. */
function stacksOf(id) {
  const words = ['-p', String(id), '-batch', '-ex', 'thread apply all backtrace 16'];
  const run = spawnSync('gdb', words, { encoding: 'utf8', timeout: 60000, killSignal: 'SIGKILL' });
  if (run.error) return `  process ${id}: gdb tells nothing of it (${run.error.code})\n`;
  const lines = run.stdout.split('\n').filter((line) => /^(Thread |#)/.test(line));
  return `  process ${id}:\n${lines.map((line) => `    ${line.slice(0, 200)}\n`).join('')}`;
}

/**
 * Runs a program to its end.
 * @param options env; patienceMs: one that isn't over by then hangs, and is killed with all that it
 *   has started; watch(output, child), if given, is called at each piece of output, with all so far
 * @returns a promise of { output, errors, code, signal, hanging }, the last the place of every thread
 *   of one that hung, else null
 */
function runProgram(file, words, options) {
  return new Promise((resolve) => {
    const child = spawn(file, words, { env: options.env, stdio: ['ignore', 'pipe', 'pipe'] });
    const result = { output: '', errors: '', code: null, signal: null, hanging: null };
    const end = () => {
      const family = familyOf(child.pid);
      result.hanging = family.map(stacksOf).join('');
      spawnSync('kill', ['-KILL'].concat(family));
      // Somebody who isn't of the family any more may hold them.
      child.stdout.destroy();
      child.stderr.destroy();
    };
    const timer = setTimeout(end, options.patienceMs);
    child.stdout.setEncoding('utf8').on('data', (text) => {
      result.output += text;
      if (options.watch) options.watch(result.output, child);
    });
    child.stderr.setEncoding('utf8').on('data', (text) => (result.errors += text));
    child.on('error', (error) => (result.errors += error.message));
    child.on('close', (code, signal) => {
      clearTimeout(timer);
      resolve(Object.assign(result, { code, signal }));
    });
  });
}

module.exports = { runProgram };
