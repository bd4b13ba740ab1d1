'use strict';

/**
 * Steers the recorder, the porting layer that the tests run over: reads the log of all calls that
 * reached it, prepares answers, makes calls wait, and fires callbacks from device threads.
 *
 * A call is { seq, fn, args, thread }. `args` holds numbers, texts, booleans and plain objects
 * (rectangles, colours); null for a null pointer, 'out' for one to write through, 'function' for a
 * callback; a lent array's count and the playback speed are given as they came in. `thread` is
 * 'script', 'pool', 'device' or another thread's name.
 *
 * A behaviour says how a call is answered: { status, outputs, patience, opens, inside }, all
 * optional. `outputs` are values by name, written whatever the status (null: the output is left
 * alone); `opens` names a gate, see hold(); `inside` is a list of events that are delivered before
 * the call returns.
 */

const path = require('path');
const { buildFolder } = require('./build');
const { patience } = require('./pace');
const native = require(path.join(buildFolder, 'recorder', 'recorder.node'));

const functions = new Set(native.functions());
const callbacks = ['keyPress', 'keyRelease', 'media', 'ad', 'dtv', 'runtimeState'];

/** After which a wait is given up, in ms. */
const PATIENCE = patience(10000);

const waiters = new Set();
let lastGate = 0;

/** Asks all conditions anew that are waited for: to be called when a test's listener has heard. */
function recheck() {
  waiters.forEach((waiter) => waiter());
}

native.onChange(recheck);
process.on('exit', () => native.stop());

function checkFunction(fn) {
  if (!functions.has(fn)) throw new TypeError(`'${fn}' is no function of the porting layer.`);
}

/** The calls since the last clear(), oldest first; of one function when it is named. */
function calls(fn) {
  const all = native.calls(0);
  if (fn === undefined) return all;
  checkFunction(fn);
  return all.filter((call) => call.fn === fn);
}

/** The calls as [fn, ...args], for comparing a whole sequence. */
function sequence() {
  return calls().map((call) => [call.fn].concat(call.args));
}

/** The arguments of each call of a function. */
function argsOf(fn) {
  return calls(fn).map((call) => call.args);
}

function clear() {
  native.clear();
}

/** Writes the name of each call from now on to standard output, for a process about to end. */
function echo() {
  native.echo();
}

/** Prepares the answer to the next call of a function that has none prepared yet. */
function once(fn, behaviour) {
  checkFunction(fn);
  native.answerOnce(fn, behaviour);
}

/** Prepares the answer to all calls of a function, as far as none is prepared with once(). */
function always(fn, behaviour) {
  checkFunction(fn);
  native.answerAlways(fn, behaviour);
}

/** Forgets all prepared answers and all calls. */
function reset() {
  native.resetAnswers();
  native.clear();
}

/**
 * Resolves with what condition() returns once that is truthy; it is asked now, and whenever
 * something about the recorder has changed. Rejects after 10 s, naming what was waited for.
 */
function waitUntil(condition, what) {
  return new Promise((resolve, reject) => {
    let timer = null;
    const finish = (settle, value) => {
      waiters.delete(check);
      clearTimeout(timer);
      native.holdLoop(waiters.size > 0);
      settle(value);
    };
    const check = () => {
      let value;
      try {
        value = condition();
      } catch (error) {
        return finish(reject, error);
      }
      if (value) finish(resolve, value);
      return undefined;
    };
    const giveUp = () => {
      const seen = calls().map((call) => call.fn);
      finish(reject, new Error(`Waited in vain for ${what}; calls: ${seen.join(' ') || 'none'}`));
    };
    waiters.add(check);
    native.holdLoop(true);
    timer = setTimeout(giveUp, PATIENCE);
    check();
  });
}

/** Resolves with the calls of a function once there are at least `count` (1). */
function waitForCalls(fn, count) {
  const wanted = count === undefined ? 1 : count;
  const enough = () => {
    const found = calls(fn);
    return found.length >= wanted && found;
  };
  return waitUntil(enough, `${wanted} calls of ${fn}`);
}

/**
 * Makes the next call of a function wait until the gate that this returns is opened, or `patience`
 * ms (10000) are over. Returns { gate, open(), blocked() }; blocked() resolves once the call waits.
 * Calls of the script thread can only be let go by another call, which opens the gate by name.
 */
function hold(fn, behaviour) {
  const gate = `gate ${(lastGate += 1)}`;
  once(fn, Object.assign({ patience: PATIENCE }, behaviour, { gate }));
  return {
    gate,
    open: () => native.openGate(gate),
    blocked: () => waitUntil(() => native.waitingAt(gate) > 0, `${fn} to wait`)
  };
}

/**
 * An event for fire() or a behaviour's `inside`: event('keyPress', code), event('keyRelease',
 * code), event('media', player, event, value), event('ad', player, event, value), event('dtv',
 * error), event('runtimeState', state).
 */
function event(callback) {
  if (callbacks.indexOf(callback) < 0) throw new TypeError(`'${callback}' is no callback.`);
  return { callback, args: Array.prototype.slice.call(arguments, 1) };
}

/** The same event `times` times over, its last argument rising by 1 from one to the next. */
function rising(event, times) {
  return Object.assign({ times }, event);
}

/** How many bytes wait in the pipe that a descriptor belongs to. */
function unread(descriptor) {
  return native.unread(descriptor);
}

/**
 * Delivers events one after the other on a device thread: the one of that name, which is kept for
 * later, or with no name a fresh one. Resolves with the number of events that found a callback
 * registered, once all have been delivered.
 */
function fire(events, thread) {
  const burst = native.fire(thread || '', [].concat(events));
  return waitUntil(() => {
    const count = native.delivered(burst);
    return count === undefined ? null : { count };
  }, 'a burst of events to be delivered').then((result) => result.count);
}

module.exports = {
  functions: Array.from(functions),
  calls,
  sequence,
  argsOf,
  clear,
  echo,
  once,
  always,
  reset,
  recheck,
  waitUntil,
  waitForCalls,
  hold,
  event,
  rising,
  fire,
  unread
};
