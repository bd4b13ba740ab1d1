'use strict';

// npm run soak [-- --minutes N] [--seed N]: the sample application, driven at random for N minutes
// (30), must lose no event, play every film, and grow neither in memory nor in threads nor in
// descriptors. Its figures are kept in build/soak.json. The last line is "N passed, M failed".

const fs = require('fs');
const path = require('path');
const { Failure, root } = require('./lib/run');
const { setup } = require('./lib/setup');
const { soak } = require('./lib/soak');

const MEBIBYTE = 1024 * 1024;

/** Of an application that the control channel has asked to quit: it ends by SIGTERM. */
const ENDED = 128 + 15;

/**
 * What the last half of a run may hold more than the half before, both without the first quarter,
 * which fills caches. Compared is what a quarter of the readings don't exceed, those between films:
 * the most is that of films which happen to overlap. Memory is compared with as many films open: on a
 * slow machine there is one in most readings of a half.
 */
const ROOM = { memory: 12 * MEBIBYTE, heap: 2 * MEBIBYTE, threads: 8, descriptors: 4 };

/** So many films may be open at the end. */
const OPEN = 2;

function parse(words) {
  const options = { minutes: 30, seed: (Date.now() % 1000000) + 1 };
  const rest = words.slice();
  while (rest.length > 0) {
    const word = rest.shift();
    const name = word.replace(/^--/, '');
    if (!word.startsWith('--') || !(name in options)) {
      throw new Failure(`'${word}' is no option; there are --minutes N and --seed N.`);
    }
    options[name] = Number(rest.shift());
    if (!(options[name] > 0)) throw new Failure(`${word} must be followed by a number above 0.`);
  }
  return options;
}

/** Slope of the straight line that fits the points best, by least squares. */
function slope(points) {
  const mean = (index) => points.reduce((sum, point) => sum + point[index], 0) / points.length;
  const [x, y] = [mean(0), mean(1)];
  const spread = points.reduce((sum, point) => sum + (point[0] - x) * (point[0] - x), 0);
  return points.reduce((sum, point) => sum + (point[0] - x) * (point[1] - y), 0) / spread;
}

/** Of one value of the figures: what a quarter of them don't exceed, and the most. */
function levels(figures, name) {
  const values = figures.map((each) => each[name]).sort((one, other) => one - other);
  return { low: values[Math.floor((values.length - 1) / 4)], most: values[values.length - 1] };
}

/**
 * The readings of two halves at which the same number of threads ran, so that as many films were open:
 * the number of which both have most. All readings where they have none in common.
 */
function alike(halves) {
  const withThreads = (count) =>
    halves.map((half) => half.filter((each) => each.threads === count));
  const shared = (pair) => Math.min(pair[0].length, pair[1].length);
  const pairs = halves[0].map((each) => withThreads(each.threads));
  const best = pairs.reduce((one, other) => (shared(other) > shared(one) ? other : one));
  return shared(best) > 0 ? best : halves;
}

/** One figure of a run as [whether it stays flat, how it is told]. */
function checkFlat(figures, name, unit, shown) {
  const settled = figures.slice(Math.floor(figures.length / 4));
  const middle = Math.floor(settled.length / 2);
  const halves = [settled.slice(0, middle), settled.slice(middle)];
  const compared = name === 'memory' ? alike(halves) : halves;
  const [before, after] = compared.map((half) => levels(half, name));
  const perMinute = slope(settled.map((each) => [each.time / 60000, each[name]])) / unit;
  const told = (half) => `${shown(half.low)} (at most ${shown(half.most)})`;
  const text = `${name}: ${told(before)}, then ${told(after)}; slope ${perMinute.toFixed(2)} a minute`;
  return [after.low - before.low <= ROOM[name], text];
}

function inMebibytes(bytes) {
  return `${(bytes / MEBIBYTE).toFixed(1)} MiB`;
}

function check(result) {
  const { figures, sent, last, status } = result;
  const count = Object.keys(sent).reduce((sum, name) => sum + sent[name], 0);
  const isHeard = Object.keys(sent).every((name) => last.heard[name] === sent[name]);
  const { films } = last;
  return [
    [
      isHeard,
      `events: ${count} sent, ${JSON.stringify(sent)}; heard ${JSON.stringify(last.heard)}`
    ],
    [
      films.shown > 0 && films.failed === 0 && films.begun - films.ended <= OPEN,
      `films: ${JSON.stringify(films)}`
    ],
    checkFlat(figures, 'memory', 1024, inMebibytes),
    checkFlat(figures, 'heap', 1024, inMebibytes),
    checkFlat(figures, 'threads', 1, String),
    checkFlat(figures, 'descriptors', 1, String),
    [status === ENDED, `status at the end: ${status}`]
  ];
}

function report(result) {
  fs.writeFileSync(path.join(root, 'build', 'soak.json'), JSON.stringify(result.figures));
  const checks = check(result);
  checks.forEach((each) => console.log(`${each[0] ? 'ok    ' : 'FAILED'} ${each[1]}`));
  const passed = checks.filter((each) => each[0]).length;
  console.log(`${passed} passed, ${checks.length - passed} failed`);
  process.exitCode = passed === checks.length ? 0 : 1;
}

Promise.resolve(process.argv.slice(2))
  .then(parse)
  .then((options) => {
    setup(['build']);
    console.log(`soak of ${options.minutes} minutes, seed ${options.seed}`);
    return soak(options);
  })
  .then(report)
  .catch((error) => {
    process.stderr.write(error instanceof Failure ? `quiravent: ${error.message}\n` : error.stack);
    process.exitCode = 1;
  });
