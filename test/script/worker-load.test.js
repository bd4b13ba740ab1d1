'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { openInput, openTuner, newPlayer, follow, endAll } = require('./support/workers');
const { quiet, threadNames, descriptorCount } = require('./support/threads');
const { load } = require('./support/pace');
const { runScript, says } = require('./support/process');
const { keepingUncaught } = require('./support/uncaught');

const SENDERS = 4;
const EVENTS_EACH = load(62500);
const ALL_EVENTS = SENDERS * EVENTS_EACH;
/** After so many a test may do something, some times on the way. */
const MILESTONE = Math.floor(ALL_EVENTS / 5);
/** Codes of a sender begin at its number times this. */
const SPAN = 1000000;

/** Memory that a process may hold beside what it had, in bytes. */
const SLACK = 24 * 1024 * 1024;

/** A listener that checks the order of each sender's keys, and counts them. */
class KeyCheck {
  constructor() {
    this.next = Array.from({ length: SENDERS }, () => 0);
    this.wrong = 0;
    this.count = 0;
    this.complete = false;
  }

  hear(name, text) {
    const code = Number(text);
    if (name !== 'keypress' || code < 0) return;
    const sender = Math.floor(code / SPAN) - 1;
    if (this.next[sender] !== code % SPAN) this.wrong += 1;
    this.next[sender] += 1;
    this.count += 1;
    if (this.count % MILESTONE === 0 && this.atMilestone) this.atMilestone();
  }
}

/** Fires all senders' keys at once, and one last key after them; resolves once all is heard. */
function fireAll(check) {
  const bursts = [];
  for (let sender = 1; sender <= SENDERS; sender += 1) {
    const keys = recorder.rising(recorder.event('keyPress', sender * SPAN), EVENTS_EACH);
    bursts.push(recorder.fire(keys, `sender ${sender}`));
  }
  return Promise.all(bursts)
    .then(quiet)
    .then(() => recorder.fire(recorder.event('keyRelease', 1), 'marker'))
    .then(() => recorder.waitUntil(() => check.count >= ALL_EVENTS, `${ALL_EVENTS} keys`));
}

/** Opens a worker over a check, loads it, ends it, collects; resolves with the check. */
function loadOnce(collects) {
  const check = new KeyCheck();
  let worker = null;
  if (collects) check.atMilestone = () => global.gc();
  const data = (name, text) => {
    check.hear(name, text);
    if (check.count >= ALL_EVENTS) recorder.recheck();
  };
  const complete = () => {
    check.complete = true;
    recorder.recheck();
  };
  recorder.reset();
  worker = new quiravent.InputWorker(data, complete, complete);
  return recorder
    .waitForCalls('pl_input_SetCallback_KeyRelease')
    .then(quiet)
    .then(() => fireAll(check))
    .then(quiet)
    .then(() => {
      worker.closeInput();
      return recorder.fire(recorder.event('keyRelease', 1), 'marker');
    })
    .then(() => recorder.waitUntil(() => check.complete, 'the completion'))
    .then(() => {
      global.gc();
      return check;
    });
}

function isSound(t, check) {
  t.equal(check.count, ALL_EVENTS, 'none is lost');
  t.equal(check.wrong, 0, 'and each thread’s order is kept');
}

test('all of four threads’ many keys arrive, and leave no memory behind', (t) => {
  let before = 0;
  // The first round brings the process to its size.
  return loadOnce(false)
    .then((check) => {
      isSound(t, check);
      before = process.memoryUsage().rss;
      return loadOnce(false);
    })
    .then((check) => {
      isSound(t, check);
      return loadOnce(true);
    })
    .then((check) => {
      isSound(t, check);
      const more = process.memoryUsage().rss - before;
      t.ok(more < SLACK, `${Math.round(more / 1024)} KiB more than after the first round`);
    });
});

const WORKERS = load(1000);

/** Opens a worker, has it hear an event, closes it and ends it by another; then the next. */
function openAndEnd(count) {
  if (!count) return Promise.resolve(0);
  const input = openInput();
  // A mark that comes before the worker waits would lie there until another is tried.
  return quiet()
    .then(() => input.markUntil(() => input.log.length > 0))
    .then(quiet)
    .then(() => {
      input.close();
      return input.completion();
    })
    .then((heard) => {
      input.close();
      if (heard.length !== 1) throw new Error(`heard ${JSON.stringify(heard)}`);
      return openAndEnd(count - 1);
    });
}

test('many workers, one after the other, leave no thread and no descriptor', (t) => {
  let threads = 0;
  let descriptors = 0;
  return openAndEnd(20)
    .then(() => {
      threads = threadNames().length;
      descriptors = descriptorCount();
      return openAndEnd(WORKERS);
    })
    .then(() => {
      t.equal(threadNames().length, threads);
      t.equal(descriptorCount(), descriptors);
    });
});

/** Opens one of each kind, ends all, and then reports to and closes each, many times. */
function useStaleWorkers(round) {
  if (!round) return Promise.resolve();
  recorder.reset();
  return Promise.all([newPlayer('media'), newPlayer('ad')])
    .then((made) => {
      const followers = [
        openInput(),
        openTuner('a', 'b'),
        follow('media', made[0]),
        follow('ad', made[1])
      ];
      const events = [
        recorder.rising(recorder.event('keyPress', 100), 20),
        recorder.rising(recorder.event('dtv', 0), 20),
        recorder.rising(recorder.event('media', made[0].handle, 0, 1), 20),
        recorder.rising(recorder.event('ad', made[1].handle, 0, 1), 20)
      ];
      return endAll(followers)
        .then(() => {
          const heard = followers.map((follower) => follower.log.length);
          const fired = events.map((event, index) => recorder.fire(event, `sender ${index}`));
          for (let count = 0; count < 20; count += 1) {
            followers.forEach((follower) => follower.close());
          }
          return Promise.all(fired)
            .then(quiet)
            .then(() => {
              const now = followers.map((follower) => follower.log.length);
              if (now.join() !== heard.join()) throw new Error(`${heard} became ${now}`);
              global.gc();
            });
        })
        .then(() => useStaleWorkers(round - 1));
    })
    .then(() => undefined);
}

test('workers that have ended take reports and closing without harm', (t) => {
  return useStaleWorkers(load(25)).then(() => t.pass('nothing is heard of it'));
});

const playerKind = (kind) => `workers.newPlayer('${kind}').then((made) => ({
  follower: workers.follow('${kind}', made),
  event: recorder.event('${kind}', made.handle, 1, 0)
}))`;

/** By kind, source that gives a promise of an open worker and an event for it. */
const KINDS = {
  input: `Promise.resolve({
    follower: workers.openInput(), event: recorder.event('keyPress', 50)
  })`,
  tuner: `Promise.resolve({
    follower: workers.openTuner('a', 'b'), event: recorder.event('dtv', 0)
  })`,
  media: playerKind('media'),
  ad: playerKind('ad')
};

const SUPPORT = `
  const workers = support('workers');
  const threads = support('threads');`;

Object.keys(KINDS).forEach((kind) => {
  test(`${kind}: a listener’s exception is the application’s, or ends the process`, (t) => {
    const source = `
      ${SUPPORT}
      process.once('uncaughtException', (error) => say(error.message + ' '));
      const throwAtData = (follower) => {
        const hear = follower.log.push;
        follower.log.push = function (entry) {
          hear.call(this, entry);
          if (entry[0] === 'data' && !follower.isMark(entry)) {
            say('heard ');
            throw new Error('of the listener');
          }
        };
      };
      const hearThrowing = () => ${KINDS[kind]}.then((open) => {
        throwAtData(open.follower);
        return threads.quiet()
          .then(() => recorder.fire(open.event))
          .then(threads.quiet)
          .then(() => open.follower.flush())
          .then(() => workers.endAll([open.follower]))
          .then(() => say(open.follower.heard().pop()[0] + ' '));
      });
      hearThrowing().then(hearThrowing);`;
    return runScript(source).then((result) => {
      t.equal(result.code, 1);
      t.equal(result.signal, null);
      t.equal(result.stdout, 'heard of the listener complete heard ', 'first handled, then not');
      t.ok(/Error: of the listener/.test(result.stderr), result.stderr);
    });
  });
});

test('events of one turn after a throwing one are heard all the same', (t) => {
  const codes = [];
  return keepingUncaught((exceptions) => {
    recorder.reset();
    const listen = (name, text) => {
      codes.push(text);
      recorder.recheck();
      if (text === '6') throw new Error('six');
    };
    let complete = false;
    const worker = new quiravent.InputWorker(listen, () => {
      complete = true;
      recorder.recheck();
    });
    const fire = (times) =>
      recorder.fire(recorder.rising(recorder.event('keyPress', 5), times)).then(quiet);
    return recorder
      .waitForCalls('pl_input_SetCallback_KeyRelease')
      .then(quiet)
      .then(() => fire(5))
      .then(() => fire(1))
      .then(() => {
        worker.closeInput();
        return fire(1);
      })
      .then(() => recorder.waitUntil(() => complete, 'the completion'))
      .then(() => {
        t.deepEqual(codes, ['5', '6', '7', '8', '9', '5', '5']);
        t.deepEqual(
          exceptions.map((error) => error.message),
          ['six']
        );
      });
  });
});

test('process.exit ends a process with open workers of all kinds', (t) => {
  const source = `
    ${SUPPORT}
    const openAll = () => Promise.all([${Object.keys(KINDS).map((kind) => KINDS[kind])}]);
    Promise.all([openAll(), openAll()]).then((open) => {
      return threads.quiet().then(() => {
        say(String(open[0].length + open[1].length));
        process.exit(9);
      });
    });`;
  return runScript(source).then((result) => {
    t.equal(result.signal, null, 'it didn’t have to be ended');
    t.equal(result.code, 9);
    t.equal(result.stdout, '8');
  });
});

test('an open worker keeps the process, and one that has ended doesn’t', (t) => {
  const source = `
    recorder.once('pl_dtv_Action_selectTransportStream', { patience: 200, gate: 'closed' });
    const tuner = new quiravent.TunerWorker('a', 'b', () => {}, () => say('complete '));
    tuner.closeTuner();
    process.on('exit', () => say('exit'));`;
  return says(t, source, 'complete exit');
});
