'use strict';

// What a device's reports cost on their way to a listener: those of our worker for input, beside a
// thread-safe function of the stable interface that calls its listener with the same two texts.

const { processTime, wallClock } = require('../lib/clocks');
const { contest, median, rowsOf } = require('../lib/contest');
const { loadAddon, overEmptyLayer } = require('../lib/emptyLayer');
const { printRow, readOptions, writeRows } = require('../lib/table');

const THREADS = [1, 4];
const AIM = 1.5;

/** Reports for a figure of latency, and the pause between them in microseconds. */
const PACED = { count: 500, quickCount: 200, pause: 1500 };
/** How long the script thread is busy in each turn of its loop when it is loaded; ms. */
const BUSY = 1;

/** A report that finds the worker between two waits stays until the next one, which is this key. */
const NUDGE = '-1';
/** How long nothing arrives before that; ms. */
const PATIENCE = 20;

/** Where a side's reports arrive: calls done() with the last that is expected. */
class Arrivals {
  constructor() {
    this.listener = (name, data) => this.arrive(data);
    this.expected = 0;
  }

  expect(count, note) {
    this.expected = count;
    this.note = note;
    return new Promise((resolve) => (this.done = resolve));
  }

  /** Has what lies told, until all that was expected has come. */
  nudge(threads) {
    let before = 0;
    const timer = setInterval(() => {
      if (this.expected <= 0) clearInterval(timer);
      else if (this.expected === before) threads.nudge();
      before = this.expected;
    }, PATIENCE);
  }

  arrive(data) {
    if (data === NUDGE) return;
    if (this.note) this.note(data);
    if (--this.expected === 0) this.done();
  }
}

/** Both sides, each with what becomes of its reports. */
function openSides(threads) {
  const { InputWorker } = require('../..');
  const sides = [
    { name: 'quiravent', isModule: true, arrivals: new Arrivals() },
    { name: 'thread-safe function', isModule: false, arrivals: new Arrivals() }
  ];
  const nothing = () => {};
  const worker = new InputWorker(sides[0].arrivals.listener, nothing, nothing);
  threads.listen(sides[1].arrivals.listener);
  return { sides, worker };
}

const turn = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

/** Until the module's worker waits for reports: one that comes before stays until the next one. */
async function settle(threads, side) {
  let fired = 0;
  let arrived = 0;
  while (!threads.isOpen()) await turn(1);
  side.arrivals.note = () => (arrived += 1);
  while (arrived === 0 || arrived < fired) {
    threads.report(side.isModule, 1, 1);
    threads.join();
    fired += 1;
    await turn(10);
  }
}

/** Has threads report, and resolves when the last report has arrived. */
async function burst(threads, side, threadCount, count) {
  const all = side.arrivals.expect(threadCount * count);
  threads.report(side.isModule, threadCount, count);
  if (side.isModule) side.arrivals.nudge(threads);
  await all;
  threads.join();
}

async function measureRate(threads, sides, threadCount, options) {
  const count = (options.quick ? 20000 : 100000) / threadCount;
  const contestants = sides.map((side) => ({
    name: side.name,
    single: true,
    frame: () => burst(threads, side, threadCount, count)
  }));
  const results = await contest(contestants, options);
  const label = `reports per second, ${threadCount} thread${threadCount > 1 ? 's' : ''}`;
  const rows = rowsOf('events', label, results, count * threadCount);
  rows.forEach((row) => (row.shown = Math.round(1e3 / row.median)));
  printRow([label, ...rows.map((row) => row.shown), rows[1].ratio.toFixed(2), AIM], WIDTHS);
  return rows;
}

/** Milliseconds from a device's call to the listener's, of each report. */
async function latencies(threads, side, options) {
  const count = options.quick ? PACED.quickCount : PACED.count;
  const times = new Float64Array(count);
  const taken = new Float64Array(count);
  const all = side.arrivals.expect(count, (data) => {
    taken[Number(data)] = wallClock() - times[Number(data)];
  });
  threads.reportPaced(side.isModule, times, PACED.pause);
  if (side.isModule) side.arrivals.nudge(threads);
  await all;
  threads.join();
  return taken.sort();
}

/** Keeps the script thread busy until it is told to stop. */
function load() {
  let isOn = true;
  const work = () => {
    const end = wallClock() + BUSY;
    while (wallClock() < end);
    if (isOn) setImmediate(work);
  };
  work();
  return () => (isOn = false);
}

async function measureLatency(threads, sides, name, options) {
  const stop = name === 'loaded' ? load() : () => {};
  const parts = [
    { label: 'median', at: 0.5, values: sides.map(() => []) },
    { label: '99 %', at: 0.99, values: sides.map(() => []) }
  ];
  for (let round = 0; round < options.rounds; ++round) {
    for (let index = 0; index < sides.length; ++index) {
      const taken = await latencies(threads, sides[index], options);
      parts.forEach((part) => part.values[index].push(taken[Math.floor(taken.length * part.at)]));
    }
  }
  stop();
  return parts.map((part) => latencyRows(`latency in µs, ${name}, ${part.label}`, part, sides));
}

function latencyRows(label, part, sides) {
  const medians = part.values.map(median);
  const times = median(part.values[1].map((value, round) => value / part.values[0][round]));
  const shown = medians.map((value) => Math.round(value * 1e3));
  printRow([label, ...shown, times.toFixed(2), ''], WIDTHS);
  return sides.map((side, index) => ({
    table: 'events',
    scene: label,
    contestant: side.name,
    median: medians[index],
    ratio: index === 0 ? 1 : times,
    shown: shown[index]
  }));
}

const WIDTHS = [32, 10, 12, 7, 5];

async function main() {
  const options = readOptions(process.argv.slice(2));
  if (options.cpuTime) options.clock = processTime;
  const threads = loadAddon('device_threads');
  const { sides, worker } = openSides(threads);
  for (const side of sides) await settle(threads, side);
  const rows = [];
  printRow(['', 'ours', 'thread-safe', ': ours', 'aim'], WIDTHS);
  for (const count of THREADS) rows.push(...(await measureRate(threads, sides, count, options)));
  for (const name of ['idle', 'loaded'])
    rows.push(...[].concat(...(await measureLatency(threads, sides, name, options))));
  writeRows(options, rows);
  worker.closeInput();
  process.exit(0);
}

overEmptyLayer(__filename, main);
