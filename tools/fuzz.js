'use strict';

// npm run fuzz [-- --seconds N] [--calls N] [--seed N] [TARGET...]: tries random input on the targets
// named, or on all: N seconds for each program (60), N calls of scripts (200000). The same seed gives
// the same inputs, but for what was found in earlier runs. What ends a program is kept in
// build/fuzz/finds.

const { buildTargets, fuzz, isProgram, targets } = require('./lib/fuzz');
const { Failure, main } = require('./lib/run');
const { setup } = require('./lib/setup');

function parse(words) {
  const options = { seconds: 60, calls: 200000, seed: (Date.now() % 1000000) + 1 };
  const names = [];
  const rest = words.slice();
  while (rest.length > 0) {
    const word = rest.shift();
    const name = word.replace(/^--/, '');
    if (word.startsWith('--') && name in options) options[name] = Number(rest.shift());
    else if (targets.indexOf(word) >= 0) names.push(word);
    else throw new Failure(`'${word}' is no target; there are ${targets.join(', ')}.`);
    if (!(options[name] === undefined || options[name] >= 1)) {
      throw new Failure(`${word} must be followed by a number from 1 on.`);
    }
  }
  return { options, names: names.length > 0 ? names : targets };
}

main((words) => {
  const { options, names } = parse(words);
  setup(names.some(isProgram) ? ['build', 'fuzz'] : ['build']);
  buildTargets(names);
  const count = fuzz(names, options);
  console.log(`${count.passed} passed, ${count.failed} failed`);
  return count.failed === 0 ? 0 : 1;
});
