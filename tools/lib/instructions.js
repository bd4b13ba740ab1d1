'use strict';

// The instructions that central scenes of drawing take, counted by callgrind: figures that noise
// doesn't reach. bench/instructions.json holds what they were when somebody last meant to change
// them.

const fs = require('fs');
const path = require('path');
const { build } = require('./build');
const { mustRun, root, run } = require('./run');

const kept = path.join(root, 'bench', 'instructions.json');
const program = path.join(root, 'build', 'release', 'bench', 'bench_scenes');
const FRAMES = 2;
const GROWTH = 1.05;

function countOf(scene) {
  const words = [
    '--tool=callgrind',
    '--toggle-collect=runFrames',
    '--callgrind-out-file=/dev/null'
  ];
  const result = mustRun('valgrind', words.concat(program, scene, FRAMES), { capture: true });
  return Math.round(Number(result.stderr.match(/Collected : (\d+)/)[1]) / FRAMES);
}

/** Instructions per frame, by scene. */
function countAll() {
  build('release', ['bench_scenes']);
  const scenes = run(program, [], { capture: true }).stdout.trim().split('\n');
  const counts = {};
  scenes.forEach((scene) => {
    counts[scene] = countOf(scene);
  });
  return counts;
}

function writeCounts(counts) {
  fs.writeFileSync(kept, JSON.stringify(counts, null, 2) + '\n');
}

/** Compares with the file and tells what differs. @returns {{passed: number, failed: number}} */
function checkCounts() {
  const before = JSON.parse(fs.readFileSync(kept, 'utf8'));
  const counts = countAll();
  const grown = Object.keys(counts).filter((scene) => !(counts[scene] <= before[scene] * GROWTH));
  grown.forEach((scene) => {
    console.log(
      `not ok ${scene}: ${counts[scene]} instructions a frame, ${before[scene]} before. If that ` +
        "is meant, keep the new counts with 'npm run instructions'."
    );
  });
  return { passed: Object.keys(counts).length - grown.length, failed: grown.length };
}

module.exports = { checkCounts, countAll, writeCounts };
