'use strict';

const { deviceCommand } = require('../lib/device-command');
const types = require('../lib/types');

module.exports = deviceCommand({
  name: 'state',
  summary: "print a running device's runtime state, or set it",
  operands: [{ name: 'NAME', type: types.text, optional: true }],
  notes: ['NAME is paused, running, low_profile, overlay, suspended or advertising.'],
  talk: (client, parsed) =>
    client
      .request('state', parsed.operands.length > 0 ? { state: parsed.operands[0] } : {})
      .then((answer) => ({ state: answer.state })),
  print: (result) => result.state
});
