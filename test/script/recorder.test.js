'use strict';

const fs = require('fs');
const path = require('path');
const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { fireUntil } = require('./support/events');
const { projectFolder } = require('./support/build');

test('every function that is declared can be recorded', (t) => {
  const folder = path.join(projectFolder, 'src', 'porting');
  const declared = new Set(['PlatformServices::EnableDTVEvents']);
  fs.readdirSync(folder).forEach((name) => {
    const text = fs.readFileSync(path.join(folder, name), 'utf8');
    const declarations = text.match(/^PL_API\s+\w+\s+\w+/gm) || [];
    declarations.forEach((declaration) => declared.add(declaration.split(/\s+/)[2]));
  });
  t.equal(recorder.functions.length, declared.size);
  t.deepEqual(
    recorder.functions.filter((fn) => !declared.has(fn)),
    []
  );
  t.end();
});

test('what isn’t known is refused', (t) => {
  ['pl_gfx_Nothing', '', undefined].forEach((fn) => {
    t.throws(() => recorder.once(fn, {}), /is no function/);
    t.throws(() => recorder.always(fn, {}), /is no function/);
  });
  t.throws(() => recorder.calls('pl_gfx_Nothing'), /is no function/);
  t.throws(() => recorder.event('keyHeld', 1), /is no callback/);
  t.end();
});

test('events without a registered callback are counted out', (t) => {
  const events = [recorder.event('dtv', 0), recorder.event('media', 1, 2, 3)];
  return recorder.fire(events).then((count) => t.equal(count, 0));
});

test('events reach the script from kept and fresh threads', (t) => {
  const seen = [];
  const completed = new Promise((resolve) => {
    const worker = new quiravent.InputWorker((name, data) => seen.push(`${name} ${data}`), resolve);
    const burst = (code) => Array.from({ length: 50 }, () => recorder.event('keyPress', code));
    const last = recorder.event('keyRelease', 9);
    const count = (text) => seen.filter((each) => each === text).length;
    recorder
      .waitForCalls('pl_input_SetCallback_KeyRelease')
      .then(() => {
        const fresh = recorder.fire(burst(5));
        return Promise.all([recorder.fire(burst(3), 'a'), recorder.fire(burst(4), 'b'), fresh]);
      })
      .then((counts) => t.deepEqual(counts, [50, 50, 50]))
      .then(() => fireUntil(last, () => count('keyrelease 9') > 0))
      .then(() => {
        ['keypress 3', 'keypress 4', 'keypress 5'].forEach((text) => t.equal(count(text), 50));
        let ended = false;
        completed.then(() => (ended = true));
        worker.closeInput();
        return fireUntil(last, () => ended);
      });
  });
  return completed.then(() => t.pass('the worker has ended'));
});

test('a key press may ask for a state from inside its callback', (t) => {
  recorder.clear();
  return recorder.fire(recorder.event('keyPress', 2)).then((count) => {
    t.equal(count, 1);
    const calls = recorder.calls('pl_platform_SetRuntimeState');
    t.deepEqual(
      calls.map((call) => [call.args, call.thread]),
      [[[2], 'device']]
    );
  });
});
