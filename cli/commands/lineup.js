'use strict';

const { spawnSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { nativeModule } = require('../lib/environment');
const { Failure, UsageError } = require('../lib/failures');

/** What can be done, and the files that it takes. */
const ACTIONS = {
  make: ['FILE.json', 'OUT.ts'],
  schema: []
};

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

module.exports = {
  name: 'lineup',
  summary: 'make a television multiplex from a description',
  operands: [
    { name: 'ACTION', type: action },
    { name: 'FILE', type: file, optional: true, many: true }
  ],
  options: [],
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
    const result = spawnSync(builder(), [name].concat(files), { stdio: 'inherit' });
    if (result.error) throw new Failure(`lineup: ${result.error.message}`);
    return result.signal ? 128 + os.constants.signals[result.signal] : result.status;
  }
};
