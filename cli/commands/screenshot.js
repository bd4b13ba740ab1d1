'use strict';

const { deviceCommand } = require('../lib/device-command');
const types = require('../lib/types');

module.exports = deviceCommand({
  name: 'screenshot',
  summary: "save a running device's screen as a PNG file",
  operands: [{ name: 'FILE', type: types.file }],
  talk: (client, parsed) =>
    client.request('capture', { file: parsed.operands[0] }).then((answer) => ({
      file: answer.file,
      frame: answer.frame,
      width: answer.width,
      height: answer.height
    })),
  print: (result) => `${result.file}: frame ${result.frame}, ${result.width} x ${result.height}`
});
