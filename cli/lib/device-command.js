'use strict';

// What all verbs share that talk to a running device.

const { ControlClient } = require('./control-client');
const { UsageError } = require('./failures');
const types = require('./types');

const CONTROL = {
  name: '--control',
  value: 'PATH',
  type: types.socket,
  help: "the device's control socket; by default $QUIRAVENT_CONTROL"
};
const TIMEOUT = {
  name: '--timeout',
  value: 'SECONDS',
  type: types.seconds,
  help: 'for how long to wait for an answer; by default 10'
};
const JSON_OUTPUT = { name: '--json', help: 'print the answer as JSON' };

function socketPath(verb, options) {
  const named = options['--control'] || process.env.QUIRAVENT_CONTROL;
  if (named) return named;
  throw new UsageError(
    `${verb.name}: --control is missing; allowed: --control PATH, or a path in QUIRAVENT_CONTROL`
  );
}

function converse(verb, parsed) {
  const patience = parsed.options['--timeout'] * 1000 || undefined;
  return ControlClient.connect(socketPath(verb, parsed.options), patience).then((client) => {
    const close = () => client.close();
    const talk = verb.talk(client, parsed);
    talk.then(close, close);
    return talk;
  });
}

function write(verb, result, asJson) {
  const text = asJson ? JSON.stringify(result) : verb.print && verb.print(result);
  if (text) process.stdout.write(`${text}\n`);
  return 0;
}

/**
 * Completes the table of a verb that talks to a device. talk(client, parsed) resolves with a result,
 * which is printed as JSON or as print(result) makes it; without print there is nothing to print.
 */
function deviceCommand(table) {
  const common = [CONTROL, TIMEOUT].concat(table.print ? [JSON_OUTPUT] : []);
  const verb = Object.assign({ operands: [] }, table, { options: common });
  verb.run = (parsed) =>
    converse(verb, parsed).then((result) => write(verb, result, parsed.options['--json']));
  return verb;
}

module.exports = { deviceCommand };
