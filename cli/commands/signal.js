'use strict';

const { deviceCommand } = require('../lib/device-command');
const { columns } = require('../lib/help');
const types = require('../lib/types');

/** What isn't a number goes to the device as it stands, which refuses it. */
const amount = (word) => (word.trim() !== '' && isFinite(word) ? Number(word) : word);
const position = (word) => (word === 'on' || word === 'off' ? word === 'on' : word);

/** By its name: the parameters of a change. */
const changes = {
  lost: (value) => ({ lost: position(value) }),
  errors: (value) => ({ errorRate: amount(value) }),
  delay: (value) => ({ delay: amount(value) }),
  seed: (value) => ({ seed: amount(value) }),
  on: (value) => ({ fault: amount(value), on: true }),
  off: (value) => ({ fault: amount(value), on: false })
};

function rowOf(fault) {
  const rate = fault.kind === 'errors' ? `${fault.errorRate} of the bits` : '';
  const time = `second ${fault.from} to ${fault.to}`;
  return [String(fault.fault), fault.on ? 'on' : 'off', fault.kind, time, rate];
}

function text(signal) {
  const state = `lost ${signal.lost ? 'on' : 'off'}`;
  const line = `${state}, errors ${signal.errorRate}, delay ${signal.delay}, seed ${signal.seed}`;
  if (signal.faults.length === 0) return line;
  return `${line}\n${columns(signal.faults.map(rowOf)).replace(/ +$/gm, '')}`;
}

module.exports = deviceCommand({
  name: 'signal',
  summary: "tell what goes wrong with a running device's television signal, or change it",
  operands: [
    { name: 'WHAT', type: types.oneOf(Object.keys(changes)), optional: true },
    { name: 'VALUE', type: types.text, withPrevious: true }
  ],
  notes: [
    'lost on     no signal, until lost off\n' +
      ' errors 1e-5 part of the bits that are wrong\n' +
      ' delay 700   milliseconds by which a signal that begins comes later\n' +
      ' seed 3      which bits are wrong, from the next selection on\n' +
      ' on 2        switches a fault of QUIRAVENT_SIGNAL_FAULTS by its number; off 2'
  ],
  talk(client, parsed) {
    const [what, value] = parsed.operands;
    const parameters = what ? changes[what](value) : {};
    return client.request('signal', parameters).then((answer) => ({ signal: answer.signal }));
  },
  print: (result) => text(result.signal)
});
