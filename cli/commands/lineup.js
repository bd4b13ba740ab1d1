'use strict';

const { spawnSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { nativeModule } = require('../lib/environment');
const { Failure, UsageError } = require('../lib/failures');
const { columns } = require('../lib/help');

/** What can be done, and the files that it takes. */
const ACTIONS = {
  make: ['FILE.json', 'OUT.ts'],
  check: ['FILE.ts'],
  schema: []
};

const MOST_OUTPUT = 1 << 24;

const action = {
  allowed: Object.keys(ACTIONS).join(', '),
  read: (word) => (Object.prototype.hasOwnProperty.call(ACTIONS, word) ? word : undefined)
};

// As it was typed: so it stands in messages.
const file = {
  allowed: 'the path of a file',
  read: (word) => word || undefined
};

function usage(name) {
  return [name].concat(ACTIONS[name]).join(' ');
}

function checkCount(name, files) {
  if (files.length === ACTIONS[name].length) return;
  throw new UsageError(
    `lineup: ${name} with ${files.length} file names; allowed: lineup ${usage(name)}`
  );
}

/** The program that does the work, beside the native module. */
function builder() {
  const program = path.join(path.dirname(nativeModule()), 'quiravent-lineup');
  if (fs.existsSync(program)) return program;
  throw new Failure(`lineup: '${program}' isn't built; build it with 'npm run build'`);
}

/** Runs the program; what it prints goes through, or is given where `output` is 'pipe'. */
function build(words, output) {
  const result = spawnSync(builder(), words, {
    stdio: ['inherit', output, 'inherit'],
    encoding: 'utf8',
    maxBuffer: MOST_OUTPUT
  });
  if (result.error) throw new Failure(`lineup: ${result.error.message}`);
  const status = result.signal ? 128 + os.constants.signals[result.signal] : result.status;
  return { status, text: result.stdout };
}

function streamLine(stream) {
  const language = stream.language ? ` (${stream.language})` : '';
  return [`${stream.pid}`, `${stream.codec}${language}`, `${stream.units} units`];
}

function serviceText(service) {
  const events = [
    ['on', service.present],
    ['next', service.following]
  ]
    .filter((pair) => pair[1])
    .map((pair) => `  ${pair[0]}: ${pair[1].name}`);
  return [`${service.id} ${service.name}, clock ${service.pcrPid}, map ${service.mapPid}`]
    .concat(service.streams.length > 0 ? columns(service.streams.map(streamLine)) : [])
    .concat(events)
    .join('\n');
}

/** What check prints for people. */
function report(found) {
  const network = found.networkName ? `, ${found.networkName}` : '';
  return [
    `transport stream ${found.transportStreamId}${network}: ` +
      `${(found.durationMs / 1000).toFixed(2)} s at ${found.bitRate} bit/s`
  ]
    .concat(found.services.map(serviceText))
    .concat(found.problems.map((problem) => `problem: ${problem}`))
    .join('\n');
}

function check(file, asJson) {
  const result = build(['check', file], 'pipe');
  if (result.text)
    process.stdout.write(asJson ? result.text : `${report(JSON.parse(result.text))}\n`);
  return result.status;
}

module.exports = {
  name: 'lineup',
  summary: 'make a television multiplex from a description, or check one',
  operands: [
    { name: 'ACTION', type: action },
    { name: 'FILE', type: file, optional: true, many: true }
  ],
  options: [{ name: '--json', help: 'print what check finds as JSON' }],
  notes: [
    `What is done:\n${Object.keys(ACTIONS)
      .map((name) => `  ${usage(name)}`)
      .join('\n')}`,
    'schema prints the JSON schema of descriptions. docs/lineup.md tells what they hold.'
  ],
  run(parsed) {
    const name = parsed.operands[0];
    const files = parsed.operands.slice(1);
    checkCount(name, files);
    if (name === 'check') return check(files[0], parsed.options['--json']);
    return build([name].concat(files), 'inherit').status;
  }
};
