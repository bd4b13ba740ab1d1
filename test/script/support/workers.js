'use strict';

// Event workers for tests, with a record of what their listeners heard.
//
// A report that finds a worker's thread anywhere but in its wait stays where it is until the next
// one, and a test can't tell where the thread is. So tests follow their reports by marks, which
// wake the worker and come out behind everything that was reported before.

const quiravent = require('./module');
const recorder = require('./recorder');
const { quiet } = require('./threads');

// Every open worker occupies a thread of the runtime's pool, which is made at its first use.
process.env.UV_THREADPOOL_SIZE = '32';

/** After which a mark that wasn't heard is taken to lie in the queue, in ms. */
const RETRY = 25;
const ATTEMPTS = 400;

const MARKER = 'marker';

/** For each kind of worker its mark, the count of earlier ones given, and what the script hears. */
const MARKS = {
  input: { event: () => recorder.event('keyRelease', -999), heard: ['keyrelease', '-999'] },
  tuner: {
    event: () => recorder.event('dtv', 4),
    heard: ['tunerlock', '0,Operação não suportada']
  },
  // Numbers without a name, each another one, since a repeated report is dropped.
  media: {
    event: (count, player) => recorder.event('media', player, 1000 + (count % 1000), 200),
    heard: ['', '200']
  },
  ad: {
    event: (count, player) => recorder.event('ad', player, 1000 + (count % 1000), 200),
    heard: ['', '200']
  }
};

/** Resolves with whether condition() came to hold within RETRY. */
function holdsSoon(condition) {
  let late = false;
  const timer = setTimeout(() => {
    late = true;
    recorder.recheck();
  }, RETRY);
  return recorder
    .waitUntil(() => condition() || late, 'a listener to hear')
    .then(() => {
      clearTimeout(timer);
      return condition();
    });
}

/** Follows a worker: what its listeners hear, in `log`, and how it is marked and closed. */
class Follower {
  constructor(kind, player) {
    this.log = [];
    this.wakesWhenClosed = kind !== 'input';
    this.marked = 0;
    this.mark = MARKS[kind];
    this.player = player;
    this.listeners = ['data', 'complete', 'error'].map((role) => this.listener(role));
  }

  listener(role) {
    const log = this.log;
    return function () {
      log.push([role].concat(Array.prototype.slice.call(arguments)));
      recorder.recheck();
    };
  }

  isMark(entry) {
    return entry[0] === 'data' && entry.slice(1).join() === this.mark.heard.join();
  }

  /** What was heard, in order, without marks: ['data', name, text], ['complete'], ['error', ...]. */
  heard() {
    return this.log.filter((entry) => !this.isMark(entry));
  }

  /** The [name, text] of each event, without marks. */
  events() {
    return this.heard()
      .filter((entry) => entry[0] === 'data')
      .map((entry) => entry.slice(1));
  }

  isComplete() {
    return this.log.some((entry) => entry[0] === 'complete');
  }

  /** Sends one mark; it counts if a callback was there to take it. */
  sendMark() {
    const event = this.mark.event(this.marked, this.player);
    this.marked += 1;
    return recorder.fire(event, MARKER).then((count) => {
      if (!count) this.marked -= 1;
    });
  }

  markUntil(condition, attempts) {
    const left = attempts === undefined ? ATTEMPTS : attempts;
    if (!left)
      return Promise.reject(new Error(`Marked in vain; heard: ${JSON.stringify(this.log)}`));
    return this.sendMark()
      .then(() => holdsSoon(condition))
      .then((holds) => holds || this.markUntil(condition, left - 1));
  }

  /** Resolves with events() once all that was reported before has been heard. */
  flush() {
    const arrived = () =>
      this.marked > 0 && this.log.filter(this.isMark, this).length >= this.marked;
    return quiet()
      .then(() => this.markUntil(arrived))
      .then(() => this.events());
  }

  /** Resolves with heard() once a worker that was asked to end has. */
  completion() {
    const complete = () => this.isComplete();
    const first = this.wakesWhenClosed ? holdsSoon(complete) : Promise.resolve(false);
    return first.then((holds) => holds || this.markUntil(complete)).then(() => this.heard());
  }

  /** Reports on a fresh device thread; resolves with events() once all is heard. */
  report(events) {
    return recorder.fire(events).then(() => this.flush());
  }
}

/** An open InputWorker, as a follower with `object`. */
function openInput() {
  const follower = new Follower('input');
  const listeners = follower.listeners;
  follower.object = new quiravent.InputWorker(listeners[0], listeners[1], listeners[2]);
  follower.close = () => follower.object.closeInput();
  return follower;
}

/** An open TunerWorker, as a follower with `object`. */
function openTuner(selector, option) {
  const follower = new Follower('tuner');
  const args = [selector, option].concat(follower.listeners);
  follower.object = new quiravent.TunerWorker(args[0], args[1], args[2], args[3], args[4]);
  follower.close = () => follower.object.closeTuner();
  return follower;
}

/** By kind of player: how a script makes one, and the porting layer's functions. */
const PLAYERS = {
  media: {
    make: 'getPlayer',
    create: 'pl_media_CreateUrlPlayer',
    register: 'pl_media_SetCallback_Event',
    unload: 'pl_media_UrlPlayer_Unload'
  },
  ad: {
    make: 'getAdPlayer',
    create: 'pl_media_CreateAdPlayer',
    register: 'pl_ad_SetCallback_Event',
    unload: 'pl_media_AdPlayer_Unload'
  }
};

let lastHandle = 100;

/** Resolves with { player, handle } for a new player of a kind, 'media' or 'ad'. */
function newPlayer(kind) {
  const handle = (lastHandle += 1);
  recorder.once(PLAYERS[kind].create, { outputs: { handle } });
  return new Promise((resolve, reject) => {
    quiravent.mediaServices[PLAYERS[kind].make]('url', {}, (error, player) => {
      if (error) reject(new Error(error.message));
      else resolve({ player, handle });
    });
  });
}

/** Registers listeners with what newPlayer() gave; gives the follower of their worker. */
function follow(kind, made) {
  const follower = new Follower(kind, made.handle);
  const listeners = follower.listeners;
  made.player.registerListener(listeners[0], listeners[1], listeners[2]);
  follower.close = () => made.player.unload();
  return follower;
}

/** Closes workers one after the other; resolves once each has ended. */
function endAll(followers) {
  return followers.reduce(
    (before, follower) =>
      before.then(quiet).then(() => {
        follower.close();
        return follower.completion();
      }),
    Promise.resolve()
  );
}

module.exports = { Follower, openInput, openTuner, PLAYERS, newPlayer, follow, endAll };
