#!/usr/bin/env node
'use strict';

// The launcher: one binary, a verb for each thing it does.

const { Failure, UsageError } = require('./lib/failures');
const { overview, verbHelp } = require('./lib/help');
const { parse } = require('./lib/options');

const verbs = [
  'run',
  'press',
  'screenshot',
  'state',
  'message',
  'keys',
  'players',
  'halt',
  'captions',
  'faults',
  'tuner',
  'signal',
  'lineup',
  'doctor'
].map((name) => require(`./commands/${name}`));

function print(text) {
  process.stdout.write(`${text}\n`);
  return 0;
}

function findVerb(name) {
  const verb = verbs.find((one) => one.name === name);
  if (verb) return verb;
  const known = verbs.map((one) => one.name).join(', ');
  const problem = name === undefined ? 'a verb is missing' : `unknown verb '${name}'`;
  throw new UsageError(`${problem}; allowed: ${known}, --help, --version`);
}

/** Does what the words say; gives the exit status or a promise of it. */
function dispatch(words) {
  if (words[0] === '--help' || words[0] === '-h') return print(overview(verbs));
  if (words[0] === '--version') return print(require('../package.json').version);
  const verb = findVerb(words[0]);
  const parsed = parse(verb, words.slice(1));
  return parsed.options['--help'] ? print(verbHelp(verb)) : verb.run(parsed);
}

function report(error) {
  if (!(error instanceof Failure)) throw error;
  process.stderr.write(`quiravent: ${error.message}\n`);
  return error.status;
}

// A reader that has seen enough, such as `head`, is no failure.
process.stdout.on('error', (error) => {
  if (error.code !== 'EPIPE') throw error;
});

Promise.resolve(process.argv.slice(2))
  .then(dispatch)
  .catch(report)
  .then((status) => {
    process.exitCode = status;
  })
  .catch((error) => {
    process.nextTick(() => {
      throw error;
    });
  });
