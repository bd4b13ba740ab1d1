'use strict';

const { deviceCommand } = require('../lib/device-command');
const types = require('../lib/types');

module.exports = deviceCommand({
  name: 'captions',
  summary: "print the captions that a running device's live players show",
  operands: [{ name: 'TEXT', type: types.text, optional: true }],
  notes: ['With TEXT, waits until a line with it is seen, for up to 5 seconds.'],
  talk: (client, parsed) =>
    client
      .request('captions', parsed.operands.length > 0 ? { text: parsed.operands[0] } : {})
      .then((answer) => ({ players: answer.players })),
  print: (result) =>
    [].concat
      .apply(
        [],
        result.players.map((each) => each.lines)
      )
      .join('\n')
});
