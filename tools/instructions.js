'use strict';

// npm run instructions: counts the instructions of central scenes and keeps them, for npm test to
// compare with, in bench/instructions.json.

const { countAll, writeCounts } = require('./lib/instructions');
const { main } = require('./lib/run');
const { setup } = require('./lib/setup');

main(() => {
  setup(['build']);
  const counts = countAll();
  writeCounts(counts);
  Object.keys(counts).forEach((scene) =>
    console.log(scene.padEnd(18) + String(counts[scene]).padStart(12))
  );
});
