'use strict';

const { deviceCommand } = require('../lib/device-command');
const { columns } = require('../lib/help');

module.exports = deviceCommand({
  name: 'keys',
  summary: "list a running device's keys with their codes and aliases",
  talk: (client) => client.request('keys').then((answer) => ({ keys: answer.keys })),
  print: (result) =>
    columns(result.keys.map((key) => [String(key.code), key.name, key.aliases.join(' ')]))
});
