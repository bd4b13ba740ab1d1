'use strict';

const { deviceCommand } = require('../lib/device-command');
const types = require('../lib/types');

module.exports = deviceCommand({
  name: 'message',
  summary: 'send a message to the application through the service selector pipe',
  operands: [
    { name: 'NAME', type: types.text },
    { name: 'VALUE', type: types.text }
  ],
  talk: (client, parsed) =>
    client.request('message', { name: parsed.operands[0], value: parsed.operands[1] })
});
