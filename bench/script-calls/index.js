'use strict';

// What a script call costs: a canvas call over a porting layer that does nothing, beside a bare
// engine callback that reads the same values. Both alternate within one process, so that the
// machine's moods meet both; the figures are medians over the rounds.

const path = require('path');
const { spawnSync } = require('child_process');

const build = process.env.QUIRAVENT_BUILD || path.join(__dirname, '..', 'build', 'release');
const layer = path.join(build, 'bench');

const ROUNDS = 25;
const CALLS = 200000;

function nanosecondsPerCall(run) {
  const begin = process.hrtime();
  run(CALLS);
  const took = process.hrtime(begin);
  return (took[0] * 1e9 + took[1]) / CALLS;
}

function median(values) {
  const sorted = values.slice().sort((a, b) => a - b);
  return sorted[sorted.length >> 1];
}

/** Runs both of a pair in turn, once to warm up and then for the rounds. */
function measure(pair) {
  const ours = [];
  const bare = [];
  for (let round = 0; round <= ROUNDS; ++round) {
    const first = nanosecondsPerCall(pair.ours);
    const second = nanosecondsPerCall(pair.bare);
    if (round === 0) continue;
    ours.push(first);
    bare.push(second);
  }
  return { name: pair.name, ours: median(ours), bare: median(bare), limit: pair.limit };
}

function pairs() {
  const { graphicServices } = require('..');
  const { Bare } = require(path.join(layer, 'bare_callbacks.node'));
  const canvas = graphicServices.getTargetCanvas();
  const bare = new Bare();
  const rect = { x: 10, y: 20, w: 30, h: 40 };
  return [
    {
      name: 'fillRect(x, y, w, h)',
      limit: 1.5,
      ours: (count) => {
        for (let i = 0; i < count; ++i) canvas.fillRect(i, 20, 30, 40);
      },
      bare: (count) => {
        for (let i = 0; i < count; ++i) bare.fourNumbers(i, 20, 30, 40);
      }
    },
    {
      name: 'fillRect({x, y, w, h})',
      limit: 2.5,
      ours: (count) => {
        for (let i = 0; i < count; ++i) canvas.fillRect(rect);
      },
      bare: (count) => {
        for (let i = 0; i < count; ++i) bare.fourProperties(rect);
      }
    }
  ];
}

function report(result) {
  const ratio = result.ours / result.bare;
  const cells = [
    result.name.padEnd(24),
    result.ours.toFixed(1).padStart(8),
    result.bare.toFixed(1).padStart(8),
    ratio.toFixed(2).padStart(8),
    result.limit.toFixed(1).padStart(8)
  ];
  console.log(cells.join(''));
}

function main() {
  console.log('call                      ns ours ns bare   ratio     aim');
  pairs().forEach((pair) => report(measure(pair)));
}

if (process.env.LD_LIBRARY_PATH === layer) {
  main();
} else {
  // The loader reads the library path when the process starts.
  const env = Object.assign({}, process.env, { LD_LIBRARY_PATH: layer });
  const child = spawnSync(process.execPath, [__filename], { env, stdio: 'inherit' });
  process.exit(child.status === null ? 1 : child.status);
}
