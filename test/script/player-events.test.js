'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const { PLAYERS, newPlayer, follow, endAll } = require('./support/workers');
const { collect } = require('./support/collection');
const { quiet } = require('./support/threads');
const { runScript, says } = require('./support/process');

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

/** Reports of a player, from [event, value] each. */
function reports(kind, handle, pairs) {
  return pairs.map((pair) => recorder.event(kind, handle, pair[0], pair[1]));
}

// [what it shows, reports as [event number, value], those that are heard as [name, value]]
const STREAMS = [
  [
    'only a rising value of the same event is news',
    [
      [0, 10],
      [0, 10],
      [0, 20],
      [0, 15],
      [0, 30]
    ],
    ['fetch_in_progress 10', 'fetch_in_progress 20', 'fetch_in_progress 30']
  ],
  ['every event has its name', NAMES.map((name, index) => [index, 0]), NAMES.map((n) => `${n} 0`)],
  [
    'a change of event always passes',
    [
      [5, 0],
      [6, 0],
      [5, 0],
      [5, 0]
    ],
    ['playback_stalled 0', 'playback_recovering 0', 'playback_stalled 0']
  ],
  [
    'and resets the value',
    [
      [0, 90],
      [1, 0],
      [0, 10],
      [0, 9],
      [0, 11]
    ],
    ['fetch_in_progress 90', 'fetch_ready 0', 'fetch_in_progress 10', 'fetch_in_progress 11']
  ],
  [
    'values are unsigned',
    [
      [3, 127],
      [3, 128],
      [3, 255],
      [3, 0],
      [4, 255]
    ],
    ['playback_ready 127', 'playback_ready 128', 'playback_ready 255', 'playback_error 255']
  ],
  [
    'a number without a name passes as any other',
    [
      [10, 0],
      [10, 0],
      [10, 1],
      [11, 1],
      [4294967295, 0],
      [4294967294, 0],
      [2147483648, 5]
    ],
    [' 0', ' 1', ' 1', ' 0', ' 0', ' 5']
  ],
  ['the first report passes with any value', [[0, 0]], ['fetch_in_progress 0']],
  ['so does that of the highest number', [[4294967294, 0]], [' 0']]
];

['media', 'ad'].forEach((kind) => {
  const fns = PLAYERS[kind];

  test(`${kind}: registerListener registers on a pool thread`, (t) => {
    recorder.reset();
    return newPlayer(kind).then((made) => {
      recorder.clear();
      const follower = follow(kind, made);
      return recorder
        .waitForCalls(fns.register)
        .then((calls) => {
          t.deepEqual(recorder.sequence(), [[fns.register, made.handle, 'function']]);
          t.equal(calls[0].thread, 'pool');
          return endAll([follower]);
        })
        .then(() => t.deepEqual(follower.heard(), [['complete']]));
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
            const texts = events.map((event) => event.join(' '));
            t.deepEqual(texts, row[2]);
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
    return runScript(source).then((result) => {
      t.equal(result.code, 0, result.stderr);
      const name = 'playback_stalled';
      t.equal(result.stdout, `${name} 1,${name} 2,${name} 3 0 04 true`);
    });
  });

  test(`${kind}: unload closes the worker, then unloads the player`, (t) => {
    recorder.reset();
    return newFollowed(kind).then((made) => {
      recorder.clear();
      t.equal(made.player.unload(1), undefined);
      t.deepEqual(recorder.sequence(), [[fns.unload, made.handle]]);
      t.equal(recorder.calls()[0].thread, 'script');
      return recorder
        .waitUntil(() => made.follower.isComplete(), 'the completion')
        .then(() => {
          t.deepEqual(made.follower.log, [['complete']], 'without an event to wake it');
          const late = reports(kind, made.handle, [
            [1, 1],
            [2, 2]
          ]);
          return recorder.fire(late);
        })
        .then(() => {
          made.player.unload();
          made.player.start();
          return quiet();
        })
        .then(() => {
          t.deepEqual(made.follower.log, [['complete']], 'nothing is heard after it');
          const handles = recorder.calls().map((call) => call.args[0]);
          t.deepEqual(handles, [made.handle, made.handle, made.handle], 'the handle stays in use');
        });
    });
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

  test(`${kind}: what is queued when the player is unloaded is heard before the end`, (t) => {
    recorder.reset();
    return newFollowed(kind).then((made) => {
      const follower = made.follower;
      const hundred = [];
      for (let value = 0; value < 100; value += 1) hundred.push([0, value]);
      // Delivered from within the call, so that the worker is closed already.
      const inside = reports(kind, made.handle, hundred);
      recorder.once(fns.unload, { inside });
      made.player.unload();
      return follower.completion().then((heard) => {
        t.deepEqual(heard[heard.length - 1], ['complete']);
        const values = heard.slice(0, -1).map((entry) => Number(entry[2]));
        t.deepEqual(
          values,
          values.map((value, index) => index),
          'a part from the first on, without a gap'
        );
      });
    });
  });

  test(`${kind}: closed before it waits, a worker completes and drops what was reported`, (t) => {
    recorder.reset();
    const held = recorder.hold(fns.register);
    return newPlayer(kind).then((made) => {
      const follower = follow(kind, made);
      return held
        .blocked()
        .then(() => {
          made.player.unload();
          held.open();
          return recorder.waitUntil(() => follower.isComplete(), 'the completion');
        })
        .then(() => t.deepEqual(follower.log, [['complete']]));
    });
  });

  test(`${kind}: what is reported before the worker waits stays until the next report`, (t) => {
    recorder.reset();
    return newPlayer(kind).then((made) => {
      const inside = reports(kind, made.handle, [
        [0, 1],
        [1, 2]
      ]);
      recorder.once(fns.register, { inside });
      const follower = follow(kind, made);
      return recorder
        .waitForCalls(fns.register)
        .then(quiet)
        .then(() => {
          t.deepEqual(follower.log, [], 'nobody woke the worker');
          return follower.report(reports(kind, made.handle, [[3, 3]]));
        })
        .then((events) => {
          t.deepEqual(events, [
            ['fetch_in_progress', '1'],
            ['fetch_ready', '2'],
            ['playback_ready', '3']
          ]);
          return endAll([follower]);
        });
    });
  });

  test(`${kind}: a device that refuses the registration leaves a worker that can be closed`, (t) => {
    recorder.reset();
    recorder.once(fns.register, { status: 9 });
    return newFollowed(kind).then((made) => {
      made.player.unload();
      return recorder
        .waitUntil(() => made.follower.isComplete(), 'the completion')
        .then(() => t.deepEqual(made.follower.log, [['complete']]));
    });
  });

  test(`${kind}: without a listener the device has no callback`, (t) => {
    recorder.reset();
    return newPlayer(kind)
      .then((made) => recorder.fire(reports(kind, made.handle, [[0, 1]])))
      .then((count) => t.equal(count, 0));
  });

  test(`${kind}: a listener that is missing or no function is noticed when called`, (t) => {
    const source = `
      process.on('uncaughtException', (error) => say(error.name + ' '));
      support('workers').newPlayer('${kind}').then((made) => {
        say(made.player.registerListener() + ' ');
        return recorder.waitForCalls('${fns.register}').then(support('threads').quiet)
          .then(() => recorder.fire(recorder.event('${kind}', made.handle, 1, 1)))
          .then(support('threads').quiet)
          .then(() => {
            say('closing ');
            made.player.unload();
          });
      });`;
    return says(t, source, 'undefined TypeError closing TypeError ');
  });
});

test('the two kinds of player have listeners and memories of their own', (t) => {
  recorder.reset();
  return Promise.all([newFollowed('media'), newFollowed('ad')]).then((made) => {
    const media = made[0];
    const ad = made[1];
    const report = (pairs) =>
      pairs.reduce((all, pair) => {
        const player = pair[0] === 'media' ? media : ad;
        return all.concat(reports(pair[0], player.handle, [[pair[1], pair[2]]]));
      }, []);
    const mixed = report([
      ['media', 0, 10],
      ['ad', 0, 5],
      ['media', 0, 10],
      ['ad', 7, 0],
      ['media', 0, 11],
      ['ad', 7, 0]
    ]);
    return recorder
      .fire(mixed)
      .then(() => Promise.all([media.follower.flush(), ad.follower.flush()]))
      .then((events) => {
        t.deepEqual(events[0], [
          ['fetch_in_progress', '10'],
          ['fetch_in_progress', '11']
        ]);
        t.deepEqual(events[1], [
          ['fetch_in_progress', '5'],
          ['playback_completed', '0']
        ]);
        return endAll([ad.follower]);
      })
      .then(() => media.follower.report(reports('media', media.handle, [[9, 9]])))
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
      .then(() => follower.report(reports('media', handle, [[1, 1]])))
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
