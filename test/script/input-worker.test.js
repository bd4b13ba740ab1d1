'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { openInput, endAll } = require('./support/workers');
const { quiet } = require('./support/threads');
const { runScript, says } = require('./support/process');
const { keepingUncaught } = require('./support/uncaught');

const key = (action, code) => recorder.event(action, code);
const PRESS = 'pl_input_SetCallback_KeyPress';
const RELEASE = 'pl_input_SetCallback_KeyRelease';

// [callback, code, what is heard: the name, and the code as text]
const KEYS = [
  ['keyPress', 37, ['keypress', '37']],
  ['keyRelease', 37, ['keyrelease', '37']],
  ['keyPress', 0, ['keypress', '0']],
  ['keyRelease', 0, ['keyrelease', '0']],
  ['keyPress', -5, ['keypress', '-5']],
  ['keyRelease', -1, ['keyrelease', '-1']],
  ['keyPress', 2147483647, ['keypress', '2147483647']],
  ['keyRelease', -2147483648, ['keyrelease', '-2147483648']],
  ['keyPress', 1, ['keypress', '1']],
  ['keyPress', 3, ['keypress', '3']],
  ['keyPress', 258, ['keypress', '258']],
  ['keyRelease', 2, ['keyrelease', '2']],
  ['keyPress', 37, ['keypress', '37']],
  ['keyPress', 37, ['keypress', '37']]
];

test('keys arrive as the decimal text of their code, in order and without a filter', (t) => {
  const input = openInput();
  return input
    .flush()
    .then(() => {
      recorder.clear();
      return input.report(KEYS.map((row) => key(row[0], row[1])));
    })
    .then((events) => {
      t.deepEqual(
        events,
        KEYS.map((row) => row[2])
      );
      t.deepEqual(recorder.calls(), []);
      return endAll([input]);
    });
});

test('keys that come again and again are told apart', (t) => {
  const codes = Array.from({ length: 400 }, (_, index) => index + 3);
  const keys = [].concat(...[1, 2, 3].map(() => codes));
  const input = openInput();
  return input
    .flush()
    .then(() => input.report(keys.map((code) => key('keyRelease', code))))
    .then((events) => {
      t.deepEqual(
        events,
        keys.map((code) => ['keyrelease', String(code)])
      );
      return endAll([input]);
    });
});

test('a press of key 2 asks for the background, and is not heard', (t) => {
  const input = openInput();
  return input
    .flush()
    .then(() => {
      recorder.clear();
      recorder.once('pl_platform_SetRuntimeState', { status: 5 });
      return input.report([
        key('keyPress', 1),
        key('keyPress', 2),
        key('keyRelease', 2),
        key('keyPress', 2),
        key('keyPress', 3)
      ]);
    })
    .then((events) => {
      t.deepEqual(events, [
        ['keypress', '1'],
        ['keyrelease', '2'],
        ['keypress', '3']
      ]);
      t.deepEqual(recorder.sequence(), [
        ['pl_platform_SetRuntimeState', 2],
        ['pl_platform_SetRuntimeState', 2]
      ]);
      t.ok(recorder.calls().every((call) => call.thread === 'device'));
      return endAll([input]);
    });
});

test('a listener is given two texts, with the global object as receiver', (t) => {
  const source = `
    const globalObject = new Function('return this;')();
    const seen = [];
    let worker = null;
    function note() {
      'use strict';
      const args = Array.prototype.slice.call(arguments);
      seen.push([this === globalObject].concat(args.map((arg) => typeof arg)));
      recorder.recheck();
    }
    worker = new quiravent.InputWorker(note, note, note);
    const press = () => recorder.fire(recorder.event('keyPress', 7)).then(() => {
      if (seen.length > 0) worker.closeInput();
      return seen.some((entry) => entry.length === 1) || press();
    });
    press().then(() => {
      const kinds = Array.from(new Set(seen.map((entry) => entry.join())));
      say(kinds.join(' ') + ', ' + seen[seen.length - 1]);
    });`;
  return says(t, source, 'true,string,string true, true', 'the last is the completion listener');
});

test('closeInput wakes nobody: the next event is delivered, then the worker completes', (t) => {
  const input = openInput();
  return input
    .flush()
    .then(quiet)
    .then(() => {
      t.equal(input.object.closeInput(), undefined);
      t.equal(input.object.closeInput(), undefined, 'twice is as good as once');
      return quiet();
    })
    .then(() => {
      t.equal(input.isComplete(), false);
      return recorder.fire(key('keyPress', 11));
    })
    .then(() => input.completion())
    .then((heard) => {
      t.deepEqual(heard, [['data', 'keypress', '11'], ['complete']]);
      const length = input.log.length;
      input.close();
      return recorder
        .fire([key('keyPress', 12), key('keyRelease', 12)])
        .then(() => quiet())
        .then(() => t.equal(input.log.length, length, 'nothing is heard after the completion'));
    });
});

test('a second worker takes all events, and the first one never completes', (t) => {
  const source = `
    const workers = support('workers');
    const first = workers.openInput();
    let second = null;
    first.flush().then(() => {
      recorder.clear();
      second = workers.openInput();
      return second.report([7, 8, 9].map((code) => recorder.event('keyPress', code)));
    }).then((events) => {
      say(JSON.stringify([events.length, first.events().length, recorder.sequence()]));
      first.close();
      return second.report([4, 5].map((code) => recorder.event('keyRelease', code)));
    }).then((events) => {
      say(JSON.stringify([events.length, first.heard()]));
      return workers.endAll([second]);
    }).then(() => support('threads').quiet()).then(() => {
      say(JSON.stringify([second.isComplete(), first.heard()]));
      process.exit(7);
    });`;
  return runScript(source).then((result) => {
    t.equal(result.code, 7, 'a worker that sleeps for good doesn’t keep the process from exiting');
    const registrations = JSON.stringify([
      [PRESS, 'function'],
      [RELEASE, 'function']
    ]);
    t.equal(result.stdout, `[3,0,${registrations}][5,[]][true,[]]`);
  });
});

// [data listener, how the fault is told]
const NO_FUNCTIONS = [
  [undefined, /undefined is not a function/],
  [5, /5 is not a function/],
  [null, /null is not a function/],
  [{ call: () => {} }, /<Object> is not a function/],
  ['text', /text is not a function/]
];

/** Presses a key again and again until condition() holds. */
function pressUntil(condition) {
  if (condition()) return Promise.resolve();
  return recorder.fire(key('keyPress', 1)).then(() => pressUntil(condition));
}

NO_FUNCTIONS.forEach((row) => {
  test(`a data listener that is no function is noticed when it is called: ${row[0]}`, (t) => {
    return keepingUncaught((exceptions) => {
      recorder.reset();
      let complete = false;
      const worker = new quiravent.InputWorker(row[0], () => (complete = true));
      return recorder
        .waitForCalls(RELEASE)
        .then(() => {
          t.deepEqual(exceptions, [], 'and no earlier');
          return pressUntil(() => exceptions.length > 0);
        })
        .then(() => {
          worker.closeInput();
          return pressUntil(() => complete);
        })
        .then(() => {
          t.ok(exceptions.every((error) => error instanceof TypeError));
          t.ok(
            exceptions.every((error) => row[1].test(error.message)),
            exceptions[0].message
          );
        });
    });
  });
});

test('a completion listener that is no function is noticed last', (t) => {
  return keepingUncaught((exceptions) => {
    recorder.reset();
    const log = [];
    const worker = new quiravent.InputWorker((name, text) => log.push(text), 12);
    worker.closeInput();
    return recorder
      .waitForCalls(RELEASE)
      .then(quiet)
      .then(() => recorder.fire(key('keyPress', 1)))
      .then(() => recorder.waitUntil(() => exceptions.length > 0, 'the fault'))
      .then(() => {
        t.equal(exceptions[0].name, 'TypeError');
        t.ok(/^1?$/.test(log.join()), log.join());
      });
  });
});
