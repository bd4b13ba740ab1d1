'use strict';

// Who has the output: what a script is told when something else takes it from its players.

const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const { row } = require('../script/support/rows');
const { Application } = require('./support/controlled');
const { medium } = require('./support/files');

/**
 * Plays a film and an advertisement, and says their events. A key pauses the film, switches live
 * television, starts or stops a live player, resumes both.
 */
const SOURCE = `
const url = ${JSON.stringify(medium('film.mp4'))};
const follow = (name, player) => {
  player.registerListener((event) => event !== 'fetch_in_progress' && say(name + ' ' + event));
  // An event that finds its worker not yet waiting lies until the next one.
  setTimeout(() => player.start(), 300);
  return player;
};
const live = quiravent.tunerServices.getPlayer(256, 257, 256);
const make = (kind, name) => new Promise((resolve) => quiravent.mediaServices[kind](url, {},
  (error, player) => resolve(follow(name, player))));
make('getPlayer', 'film').then((first) => make('getAdPlayer', 'ad').then((second) => {
  const players = [first, second];
  const actions = {
    19: () => players[0].pause(),
    48: () => platformServices.toggleLiveDTV(false),
    49: () => platformServices.toggleLiveDTV(true),
    50: () => live.start(),
    51: () => live.stop(),
    415: () => players.forEach((player) => player.resume())
  };
  new quiravent.InputWorker((name, data) => {
    if (name === 'keypress' && actions[data]) actions[data]();
    if (name === 'keypress') say('key ' + data);
  });
}));
// With a handler the signal doesn't end the process, which so hears what it was told before it.
process.on('SIGTERM', () => say('asked to end'));
`;

const commands = {
  press: (key) => ['press', { key, hold: 0 }],
  state: (state) => ['state', { state }],
  halt: (player, how) => ['haltPlayer', { player, how }]
};
const both = (event) => [`film ${event}`, `ad ${event}`];

/** Causes in their order, and the events that follow from each. */
const SUSPENSIONS = [].concat.apply(
  [],
  ['paused', 'suspended', 'low_profile', 'overlay'].map((state) => [
    row(commands.state(state), both('playback_suspend')),
    row(commands.press('MediaPlay'), []),
    row(commands.state('running'), []),
    row(commands.press('MediaPlay'), both('playback_ready'))
  ])
);
SUSPENSIONS.push(
  row(commands.press('2'), both('playback_suspend')),
  row(commands.press('MediaPlay'), []),
  row(commands.press('3'), []),
  row(commands.press('MediaPlay'), both('playback_ready')),
  row(commands.state('advertising'), []),
  row(commands.press('1'), both('playback_suspend')),
  row(commands.state('overlay'), []),
  row(commands.press('0'), []),
  row(commands.press('MediaPlay'), []),
  row(commands.state('running'), []),
  row(commands.press('MediaPlay'), both('playback_ready')),
  row(commands.press('MediaPause'), []),
  row(commands.state('overlay'), ['ad playback_suspend'])
);

class Script {
  constructor(t) {
    this.application = new Application(t, SOURCE, { UV_THREADPOOL_SIZE: '8' });
    this.heard = 0;
  }

  start() {
    return this.application.connect().then((application) => application.untilListening());
  }

  events() {
    return this.application.said().filter((line) => /playback/.test(line));
  }

  /** Resolves with the events since the last call, once there are so many. */
  next(count) {
    return this.application
      .nudgeUntil(() => this.events().length >= this.heard + count)
      .then(() => {
        const all = this.events().slice(this.heard);
        this.heard += all.length;
        return all.sort();
      });
  }

  /** Asks; after a key, until the script has done what it does on it. */
  ask(command) {
    const keys = () => this.application.said().filter((line) => line.startsWith('key')).length;
    const before = keys();
    return this.application
      .request(command[0], command[1])
      .then(() => command[0] === 'press' && this.application.nudgeUntil(() => keys() > before));
  }
}

function startPlaying(t) {
  const script = new Script(t);
  return script
    .start()
    .then(() => script.next(2))
    .then((events) => t.deepEqual(events, both('playback_ready').sort()))
    .then(() => script);
}

test('players are suspended while something else has the output', (t) =>
  startPlaying(t).then((script) =>
    inSequence(SUSPENSIONS, (step) =>
      script
        .ask(step[0])
        .then(() => script.next(step[1].length))
        .then((events) =>
          t.deepEqual(events, step[1].slice().sort(), step[0][1].state || step[0][1].key)
        )
    )
  ));

test('players are aborted when the system stops the application', (t) =>
  startPlaying(t).then((script) =>
    script
      .ask(commands.halt(1, 'abort'))
      .then(() => script.next(1))
      .then((events) => t.deepEqual(events, ['film playback_abort']))
      .then(() => script.ask(['quit', {}]))
      .then(() => script.next(1))
      .then((events) => t.deepEqual(events, ['ad playback_abort'], 'the other one was before'))
  ));
