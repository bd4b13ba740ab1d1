'use strict';

const { deviceCommand } = require('../lib/device-command');
const { columns } = require('../lib/help');
const types = require('../lib/types');

function rowOf(fault) {
  const rate = fault.bytesPerSecond ? `${fault.bytesPerSecond} bytes per second` : '';
  const time = `second ${fault.from} to ${fault.to}`;
  return [String(fault.fault), fault.on ? 'on' : 'off', fault.kind, time, rate];
}

module.exports = deviceCommand({
  name: 'faults',
  summary: "list the faults of a running device's reading of media, or switch one",
  operands: [
    { name: 'SWITCH', type: types.oneOf(['on', 'off']), optional: true },
    { name: 'FAULT', type: types.number, withPrevious: true }
  ],
  notes: ['QUIRAVENT_FAULTS says which faults there are. FAULT is the number of one.'],
  talk(client, parsed) {
    const [position, fault] = parsed.operands;
    const parameters = position ? { fault, on: position === 'on' } : {};
    return client.request('faults', parameters).then((answer) => ({ faults: answer.faults }));
  },
  print: (result) =>
    result.faults.length > 0 ? columns(result.faults.map(rowOf)).replace(/ +$/gm, '') : 'no faults'
});
