'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const { PLAYERS, newPlayer, follow, endAll } = require('./support/workers');
const { collect } = require('./support/collection');
const { quiet } = require('./support/threads');
const { says } = require('./support/process');

const NAMES = (
  'fetch_in_progress fetch_ready fetch_error playback_ready playback_error playback_stalled ' +
  'playback_recovering playback_completed playback_abort playback_suspend'
).split(' ');

/** Resolves with { player, handle, follower } for a player whose worker has begun to wait. */
function newFollowed(kind) {
  return newPlayer(kind).then((made) => {
    const follower = follow(kind, made);
    return recorder
      .waitForCalls(PLAYERS[kind].register)
      .then(quiet)
      .then(() => Object.assign(made, { follower }));
  });
}

/** Reports of a player, from a text of event number:value each. */
function reports(kind, handle, text) {
  return text.split(' ').map((each) => {
    const numbers = each.split(':').map(Number);
    return recorder.event(kind, handle, numbers[0], numbers[1]);
  });
}

// [what it shows, reports as event number:value, those that are heard as name:value]
const STREAMS = [
  [
    'only a rising value of the same event is news',
    '0:10 0:10 0:20 0:15 0:30',
    'fetch_in_progress:10 fetch_in_progress:20 fetch_in_progress:30'
  ],
  [
    'every event has its name',
    NAMES.map((name, index) => `${index}:0`).join(' '),
    NAMES.map((name) => `${name}:0`).join(' ')
  ],
  [
    'a change of event always passes',
    '5:0 6:0 5:0 5:0',
    'playback_stalled:0 playback_recovering:0 playback_stalled:0'
  ],
  [
    'and resets the value',
    '0:90 1:0 0:10 0:9 0:11',
    'fetch_in_progress:90 fetch_ready:0 fetch_in_progress:10 fetch_in_progress:11'
  ],
  [
    'values are unsigned',
    '3:127 3:128 3:255 3:0 4:255',
    'playback_ready:127 playback_ready:128 playback_ready:255 playback_error:255'
  ],
  [
    'a number without a name passes as any other',
    '10:0 10:0 10:1 11:1 4294967295:0 4294967294:0 2147483648:5',
    ':0 :1 :1 :0 :0 :5'
  ],
  ['the first report passes with any value', '0:0', 'fetch_in_progress:0'],
  ['so does that of the highest number', '4294967294:0', ':0']
];

['media', 'ad'].forEach((kind) => {
  const fns = PLAYERS[kind];

  test(`${kind}: an unloaded player keeps its handle`, (t) => {
    recorder.reset();
    return newFollowed(kind)
      .then((made) => endAll([made.follower]).then(() => made))
      .then((made) => {
        recorder.clear();
        made.player.start();
        t.equal(recorder.calls()[0].args[0], made.handle);
      });
  });

  STREAMS.forEach((row) => {
    test(`${kind}: ${row[0]}`, (t) => {
      recorder.reset();
      return newFollowed(kind).then((made) => {
        const follower = made.follower;
        return follower
          .report(reports(kind, made.handle, row[1]))
          .then((events) => {
            t.equal(events.map((event) => event.join(':')).join(' '), row[2]);
            t.ok(events.every((event) => event.every((each) => typeof each === 'string')));
            return endAll([follower]);
          })
          .then(() => t.deepEqual(follower.heard().pop(), ['complete']));
      });
    });
  });

  test(`${kind}: a new listener begins anew`, (t) => {
    const source = `
      const workers = support('workers');
      workers.newPlayer('${kind}').then((made) => {
        const report = [recorder.event('${kind}', made.handle, 7, 9)];
        const first = workers.follow('${kind}', made);
        let second = null;
        return recorder.waitForCalls('${fns.register}')
          .then(support('threads').quiet)
          .then(() => recorder.fire(report))
          .then(() => recorder.waitUntil(() => first.log.length > 0, 'the first report'))
          .then(() => {
            second = workers.follow('${kind}', made);
            return recorder.waitForCalls('${fns.register}', 2);
          })
          .then(support('threads').quiet)
          .then(() => second.report(report.concat(report)))
          .then(() => workers.endAll([second]))
          .then(() => {
            say(JSON.stringify([first.heard(), second.heard()]));
            process.exit(0);
          });
      });`;
    const event = '["data","playback_completed","9"]';
    return says(t, source, `[[${event}],[${event},["complete"]]]`);
  });

  test(`${kind}: the reports of all players go to the last listener, as one stream`, (t) => {
    const source = `
      const workers = support('workers');
      const made = [];
      const newFollowed = (count) => workers.newPlayer('${kind}').then((player) => {
        made.push(Object.assign(player, { follower: workers.follow('${kind}', player) }));
        return recorder.waitForCalls('${fns.register}', count).then(support('threads').quiet);
      });
      const report = (index, event, value) => {
        return recorder.event('${kind}', made[index].handle, event, value);
      };
      newFollowed(1).then(() => newFollowed(2)).then(() => {
        const events = [report(0, 5, 1), report(1, 5, 1), report(1, 5, 2), report(0, 5, 3)];
        return made[1].follower.report(events);
      }).then((events) => {
        say(events.map((event) => event.join(' ')) + ' ' + made[0].follower.heard().length);
        recorder.clear();
        // Closes the last worker, and unloads its own player.
        made[0].player.unload();
        return made[1].follower.completion();
      }).then(() => {
        made[0].player.unload();
        return support('threads').quiet();
      }).then(() => {
        say(' ' + made[0].follower.heard().length + made[1].follower.heard().length);
        const unloaded = recorder.argsOf('${fns.unload}').map((args) => args[0]);
        say(' ' + unloaded.every((handle) => handle === made[0].handle));
        process.exit(0);
      });`;
    const name = 'playback_stalled';
    return says(t, source, `${name} 1,${name} 2,${name} 3 0 04 true`);
  });

  test(`${kind}: the worker is closed before the player is unloaded`, (t) => {
    const source = `
      process.env.UV_THREADPOOL_SIZE = '1';
      // Registers for keys and ends: the press of key 2 then shows in the log when it comes.
      const registration = recorder.hold('pl_input_SetCallback_KeyRelease');
      new quiravent.InputWorker(() => {}, () => {}).closeInput();
      registration.open();
      quiravent.mediaServices.${fns.make}('url', {}, (error, player) => {
        player.registerListener(() => {}, () => {}, () => {});
        recorder.waitForCalls('${fns.register}').then(support('threads').quiet).then(() => {
          // This job waits behind the worker for the only thread of the pool.
          quiravent.graphicServices.loadFont('path', 12, () => {});
          const inside = [recorder.event('keyPress', 2)];
          const held = recorder.hold('${fns.unload}', { patience: 5000, inside });
          recorder.once('pl_gfx_LoadFont', { opens: held.gate });
          recorder.clear();
          player.unload();
          const fns = recorder.calls().map((call) => call.fn);
          say(fns.slice().sort().concat(fns[2]).join());
        });
      });`;
    return says(
      t,
      source,
      `pl_gfx_LoadFont,${fns.unload},pl_platform_SetRuntimeState,pl_platform_SetRuntimeState`,
      'the key came last: the thread was free while the player was being unloaded'
    );
  });
});

test('the two kinds of player have listeners and memories of their own', (t) => {
  recorder.reset();
  return Promise.all([newFollowed('media'), newFollowed('ad')]).then((made) => {
    const [media, ad] = made;
    const ofMedia = reports('media', media.handle, '0:10 0:10 0:11');
    const ofAd = reports('ad', ad.handle, '0:5 7:0 7:0');
    const mixed = ofMedia.map((report, index) => [report, ofAd[index]]);
    return recorder
      .fire([].concat.apply([], mixed))
      .then(() => Promise.all([media.follower.flush(), ad.follower.flush()]))
      .then((events) => {
        t.deepEqual(events[0].join(' '), 'fetch_in_progress,10 fetch_in_progress,11');
        t.deepEqual(events[1].join(' '), 'fetch_in_progress,5 playback_completed,0');
        return endAll([ad.follower]);
      })
      .then(() => media.follower.report(reports('media', media.handle, '9:9')))
      .then((events) => {
        t.deepEqual(events.pop(), ['playback_suspend', '9'], 'the other worker goes on');
        return endAll([media.follower]);
      });
  });
});

test('reports of a player whose object was collected still arrive', (t) => {
  recorder.reset();
  return newFollowed('media').then((made) => {
    const follower = made.follower;
    const handle = made.handle;
    made.player = null;
    return collect()
      .then(() => follower.report(reports('media', handle, '1:1')))
      .then((events) => {
        t.deepEqual(events, [['fetch_ready', '1']]);
        // Any player's unload closes the worker.
        return newPlayer('media');
      })
      .then((other) => {
        other.player.unload();
        return follower.completion();
      })
      .then((heard) => t.deepEqual(heard.pop(), ['complete']));
  });
});
