'use strict';

// What the workers of all four kinds have in common. What is reported to them, how it is filtered
// and what else belongs to one kind is tested with that kind.

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { PLAYERS, newPlayer, openInput, openTuner, follow, endAll } = require('./support/workers');
const { quiet } = require('./support/threads');
const { says } = require('./support/process');
const { keepingUncaught } = require('./support/uncaught');

const PRESS = 'pl_input_SetCallback_KeyPress';
const RELEASE = 'pl_input_SetCallback_KeyRelease';
const SELECT = 'pl_dtv_Action_selectTransportStream';
const UNSELECT = 'pl_dtv_Action_unselectTransportStream';

const playerKind = (kind) => ({
  prepare: () =>
    newPlayer(kind).then((made) => ({ handle: made.handle, open: () => follow(kind, made) })),
  begin: (handle) => [[PLAYERS[kind].register, handle, 'function']],
  end: (handle) => [[PLAYERS[kind].unload, handle]],
  endsOn: 'script',
  events: (handle) => [
    recorder.event(kind, handle, 0, 1),
    recorder.event(kind, handle, 1, 2),
    recorder.event(kind, handle, 3, 3)
  ],
  heard: [
    ['fetch_in_progress', '1'],
    ['fetch_ready', '2'],
    ['playback_ready', '3']
  ]
});

/**
 * By kind: prepare() resolves with { handle, open }, by which a worker is opened; the calls with
 * which it begins and ends, and the thread of the last; three events, and what is heard of them.
 */
const KINDS = {
  input: {
    Class: quiravent.InputWorker,
    prepare: () => Promise.resolve({ open: openInput }),
    begin: () => [
      [PRESS, 'function'],
      [RELEASE, 'function']
    ],
    end: () => [],
    events: () => [
      recorder.event('keyPress', 1),
      recorder.event('keyPress', 3),
      recorder.event('keyRelease', 5)
    ],
    heard: [
      ['keypress', '1'],
      ['keypress', '3'],
      ['keyrelease', '5']
    ]
  },
  tuner: {
    Class: quiravent.TunerWorker,
    prepare: () => Promise.resolve({ open: () => openTuner('channel 7', 'fast') }),
    begin: () => [[SELECT, 'channel 7', 'fast', 'function']],
    end: () => [[UNSELECT]],
    endsOn: 'pool',
    events: () => [7, 0, 9].map((code) => recorder.event('dtv', code)),
    heard: [
      ['tunerlock', '0,Sem Sinal'],
      ['tunerlock', '1,'],
      ['tunerlock', '0,Mídia não encontrada']
    ]
  },
  media: playerKind('media'),
  ad: playerKind('ad')
};

Object.keys(KINDS).forEach((kind) => {
  const { Class, prepare, begin, end, endsOn, events, heard } = KINDS[kind];
  const names = begin().map((call) => call[0]);
  const lastOfBegin = names[names.length - 1];

  const waits = () => recorder.waitForCalls(lastOfBegin).then(quiet);

  // First of all, since what is registered stays.
  test(`${kind}: the device has no callback before the first worker`, (t) =>
    prepare()
      .then((made) => recorder.fire(events(made.handle)))
      .then((count) => t.equal(count, 0)));

  test(`${kind}: the life of a worker`, (t) =>
    prepare().then((made) => {
      recorder.reset();
      const follower = made.open();
      if (follower.object) {
        t.ok(follower.object instanceof Class);
        t.deepEqual(Object.getOwnPropertyNames(follower.object), []);
      }
      t.ok(recorder.calls().every((call) => call.thread !== 'script'));
      return waits()
        .then(() => {
          t.deepEqual(recorder.sequence(), begin(made.handle));
          t.ok(recorder.calls().every((call) => call.thread === 'pool'));
          recorder.clear();
          t.equal(follower.close(), undefined);
          return follower.completion();
        })
        .then((all) => {
          t.deepEqual(all, [['complete']]);
          const needsNoMark = follower.marked === 0;
          t.equal(needsNoMark, kind !== 'input', 'which only an input worker needs a report for');
          t.deepEqual(recorder.sequence(), end(made.handle));
          t.ok(recorder.calls().every((call) => call.thread === endsOn));
          const { length } = follower.log;
          for (let count = 0; count < 100; count += 1) follower.close();
          return recorder
            .fire(recorder.rising(events(made.handle)[2], 100))
            .then((count) => t.equal(count, 100, 'the device may still report'))
            .then(quiet)
            .then(() => {
              t.equal(follower.log.length, length, 'and nothing is heard of it');
              const unloads = endsOn === 'script' ? 101 : end().length;
              t.equal(
                recorder.calls().length,
                unloads,
                'each unloading is passed on, no other end'
              );
            });
        });
    }));

  test(`${kind}: what is reported before the worker waits stays until the next report`, (t) =>
    prepare().then((made) => {
      recorder.reset();
      const all = events(made.handle);
      recorder.once(lastOfBegin, { inside: all.slice(0, 2) });
      const follower = made.open();
      return waits()
        .then(() => {
          t.deepEqual(follower.log, [], 'nobody woke the worker');
          return follower.report(all[2]);
        })
        .then((told) => {
          t.deepEqual(told, heard);
          return endAll([follower]);
        });
    }));

  test(`${kind}: closed before it waits, a worker completes and drops what was reported`, (t) =>
    prepare().then((made) => {
      recorder.reset();
      const held = recorder.hold(lastOfBegin, { inside: events(made.handle) });
      const follower = made.open();
      return held
        .blocked()
        .then(() => {
          follower.close();
          held.open();
          return recorder.waitUntil(() => follower.isComplete(), 'the completion');
        })
        .then(quiet)
        .then(() => {
          t.deepEqual(follower.log, [['complete']]);
          t.deepEqual(recorder.sequence(), begin(made.handle).concat(end(made.handle)));
        });
    }));

  test(`${kind}: a device that refuses the registration leaves a worker that can be closed`, (t) =>
    prepare().then((made) => {
      recorder.reset();
      names.concat(end().map((call) => call[0])).forEach((fn) => recorder.once(fn, { status: 9 }));
      const follower = made.open();
      return waits()
        .then(() => {
          t.deepEqual(follower.log, [], 'it waits all the same');
          return endAll([follower]);
        })
        .then(() => {
          t.deepEqual(follower.heard(), [['complete']]);
          t.deepEqual(recorder.sequence(), begin(made.handle).concat(end(made.handle)));
        });
    }));
});

const closePlayer = (kind) => (follower) => {
  // Delivered from within the call, so that the worker is closed already.
  const report = recorder.event(kind, follower.player, 0, 0);
  recorder.once(PLAYERS[kind].unload, { inside: [recorder.rising(report, 100)] });
  follower.close();
};

/** By kind: closes a worker so that many reports, which count up, come at the same time. */
const CLOSED_AMIDST_REPORTS = {
  input: (follower) => {
    follower.close();
    return recorder.fire(recorder.rising(recorder.event('keyPress', 100), 500));
  },
  media: closePlayer('media'),
  ad: closePlayer('ad')
};

Object.keys(CLOSED_AMIDST_REPORTS).forEach((kind) => {
  test(`${kind}: what is queued when the worker is closed is heard before the end`, (t) => {
    recorder.reset();
    return KINDS[kind].prepare().then((made) => {
      const follower = made.open();
      return follower
        .flush()
        .then(quiet)
        .then(() => CLOSED_AMIDST_REPORTS[kind](follower))
        .then(() => follower.completion())
        .then((heard) => {
          t.deepEqual(heard.pop(), ['complete']);
          const values = heard.map((entry) => Number(entry[2]));
          const first = kind === 'input' ? 100 : 0;
          t.ok(values.length > 0 || kind !== 'input', 'at least the event that ended it');
          t.deepEqual(
            values,
            values.map((value, index) => first + index),
            'a part from the first on, without a gap'
          );
        });
    });
  });
});

// [class, arguments before the listeners, what closes it, functions that are called]
const CONSTRUCTORS = [
  ['InputWorker', '', 'closeInput', [PRESS, RELEASE]],
  ['TunerWorker', "'a', 'b', ", 'closeTuner', [SELECT, UNSELECT]]
];

CONSTRUCTORS.forEach((row) => {
  test(`${row[2]} before a pool thread takes the worker, which begins all the same`, (t) => {
    const source = `
      process.env.UV_THREADPOOL_SIZE = '1';
      const held = recorder.hold('pl_media_CreateUrlPlayer');
      quiravent.mediaServices.getPlayer('url', {}, () => say('player '));
      held.blocked().then(() => {
        const log = (text) => () => say(text);
        new quiravent.${row[0]}(${row[1]}log('data '), log('complete '), log('error ')).${row[2]}();
        say(recorder.calls('${row[3][0]}').length + ' ');
        held.open();
      });
      process.on('exit', () => say(String(recorder.calls().map((call) => call.fn).slice(-2))));`;
    return says(t, source, `0 player complete ${row[3].join()}`);
  });

  test(`called plainly, ${row[0]} makes an object all the same`, (t) => {
    const source = `
      const log = [];
      const note = (name) => () => {
        log.push(name);
        recorder.recheck();
      };
      const Class = quiravent.${row[0]};
      const made = [Class(), Class.call({}), quiravent.${row[0]}(null, 1, 2, 3)];
      const worker = Class(${row[1]}note('data'), note('complete'), note('error'));
      made.push(worker);
      say(made.every((object) => object instanceof Class) + ' ');
      const untilHeard = (role) => recorder
        .fire([recorder.event('keyPress', 5), recorder.event('dtv', 0)])
        .then(support('threads').quiet)
        .then(() => log.indexOf(role) >= 0 || untilHeard(role));
      untilHeard('data').then(() => {
        worker.${row[2]}();
        return untilHeard('complete');
      }).then(() => {
        say(log.filter((entry, index) => log.indexOf(entry) === index).join());
        process.exit(0);
      });`;
    return says(t, source, 'true data,complete');
  });
});

// [what opens a follower, a report, what is heard]
const OUTLIVING = [
  ['openInput()', "event('keyPress', 8)", 'keypress,8'],
  ["openTuner('a', 'b')", "event('dtv', 7)", 'tunerlock,0,Sem Sinal']
];

OUTLIVING.forEach((row) => {
  test(`${row[0]}: a worker outlives its script object`, (t) => {
    const source = `
      const follower = support('workers').${row[0]};
      follower.object = null;
      follower.flush()
        .then(() => support('collection').collect())
        .then(() => follower.report(recorder.${row[1]}))
        .then((events) => {
          say(events.join() + ' ' + recorder.calls('${UNSELECT}').length);
          process.exit(0);
        });`;
    return says(t, source, `${row[2]} 0`);
  });
});

const openWithoutListeners = {
  tuner: () => {
    const worker = new quiravent.TunerWorker('a', 'b', 5);
    return () => worker.closeTuner();
  },
  player: (made) => {
    if (made.player.registerListener() !== undefined) throw new Error('it gave a result');
    return () => made.player.unload();
  }
};

// [what opens a worker and gives what closes it, kind of a player, its first call, event for it]
const NO_LISTENERS = [['tuner', 'media', SELECT, () => recorder.event('dtv', 0)]].concat(
  ['media', 'ad'].map((kind) => {
    const event = (made) => recorder.event(kind, made.handle, 1, 1);
    return ['player', kind, PLAYERS[kind].register, event];
  })
);

NO_LISTENERS.forEach((row) => {
  test(`${row[2]}: listeners that are no functions are noticed when they are called`, (t) => {
    return keepingUncaught((exceptions) =>
      newPlayer(row[1]).then((made) => {
        recorder.clear();
        const close = openWithoutListeners[row[0]](made);
        return recorder
          .waitForCalls(row[2])
          .then(quiet)
          .then(() => recorder.fire(row[3](made)))
          .then(() => recorder.waitUntil(() => exceptions.length > 0, 'the first fault'))
          .then(quiet)
          .then(() => {
            t.equal(exceptions.length, 1);
            close();
            return recorder.waitUntil(() => exceptions.length > 1, 'that of the completion');
          })
          .then(() => t.ok(exceptions.every((error) => error instanceof TypeError)));
      })
    );
  });
});
