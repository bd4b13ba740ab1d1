'use strict';

// Measures contestants beside each other: in every round each of them runs one batch, in turn, so
// that the machine's moods meet all of them. Figures are medians over the rounds; a ratio is the
// median of the rounds' ratios.

const { wallClock } = require('./clocks');

function median(values) {
  const sorted = values.slice().sort((a, b) => a - b);
  const middle = sorted.length >> 1;
  return sorted.length % 2 === 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

/** (largest - smallest) / median */
function spread(values) {
  return (Math.max(...values) - Math.min(...values)) / median(values);
}

/** Milliseconds of a frame, over a batch; frames that answer promises are waited for in turn. */
async function runBatch(contestant, frames, clock) {
  if (contestant.prepare) await contestant.prepare();
  const begin = clock();
  for (let i = 0; i < frames; ++i) {
    const pending = contestant.frame(contestant.count++);
    if (pending) await pending;
  }
  if (contestant.finish) contestant.finish();
  return (clock() - begin) / frames;
}

/** Frames after which everybody's caches hold what they keep: some begin with the second use. */
const WARM_UP = 3;

/** As many frames as take the time of a batch, in whole groups. */
async function calibrate(contestant, batchTime, clock) {
  const group = contestant.group || 1;
  if (contestant.single) {
    await runBatch(contestant, 1, clock);
    return 1;
  }
  await runBatch(contestant, WARM_UP * group, clock);
  let frames = group;
  for (;;) {
    const took = (await runBatch(contestant, frames, clock)) * frames;
    if (took >= batchTime / 2 || frames >= 1e7) {
      return Math.max(group, Math.round((frames * batchTime) / took / group) * group);
    }
    frames *= 2;
  }
}

/**
 * Runs contestants {name, frame(i), prepare, finish, group, single} against each other.
 * prepare: before each batch, outside of its time; finish: at its end, within its time; group:
 * frames that belong together; single: one frame per batch.
 * options: {rounds, batchTime: ms, clock: function that answers ms; default: the time that passes}
 * @returns {Array<{name, median, spread, values}>} milliseconds per frame
 */
async function contest(contestants, options) {
  const clock = options.clock || wallClock;
  const batches = [];
  for (const contestant of contestants) {
    contestant.count = 0;
    batches.push(await calibrate(contestant, options.batchTime, clock));
  }
  const values = contestants.map(() => []);
  for (let round = 0; round < options.rounds; ++round) {
    for (let turn = 0; turn < contestants.length; ++turn) {
      const index = (turn + round) % contestants.length;
      values[index].push(await runBatch(contestants[index], batches[index], clock));
    }
  }
  return contestants.map((contestant, index) => ({
    name: contestant.name,
    median: median(values[index]),
    spread: spread(values[index]),
    values: values[index]
  }));
}

/** How many times as long the other one takes. */
function ratio(other, own) {
  return median(other.values.map((value, round) => value / own.values[round]));
}

/**
 * The rows of a scene for bench.json, in milliseconds of one call; ratios are to the first result.
 * calls: how many a frame makes
 */
function rowsOf(table, scene, results, calls) {
  return results.map((result) => ({
    table,
    scene,
    contestant: result.name,
    median: result.median / calls,
    spread: result.spread,
    ratio: ratio(result, results[0])
  }));
}

module.exports = { contest, median, ratio, rowsOf };
