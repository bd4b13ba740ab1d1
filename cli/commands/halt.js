'use strict';

const { deviceCommand } = require('../lib/device-command');
const types = require('../lib/types');

module.exports = deviceCommand({
  name: 'halt',
  summary: 'have a running device suspend or abort a player, as if it needed the decoder',
  operands: [
    { name: 'HOW', type: types.oneOf(['suspend', 'abort']) },
    { name: 'PLAYER', type: types.number }
  ],
  notes: ['PLAYER is a number that quiravent players tells.'],
  talk: (client, parsed) =>
    client.request('haltPlayer', { how: parsed.operands[0], player: parsed.operands[1] })
});
