'use strict';

const { deviceCommand } = require('../lib/device-command');
const { nameOf, notes } = require('../lib/key-steps');
const { playKeys } = require('../lib/play-keys');
const types = require('../lib/types');

module.exports = deviceCommand({
  name: 'press',
  summary: 'press and release keys on a running device, one after the other',
  operands: [{ name: 'KEY', type: types.key, many: true }],
  notes: [notes],
  talk(client, parsed) {
    const steps = [].concat.apply([], parsed.operands);
    return playKeys(client, steps, () => {}).then((answers) => ({
      pressed: steps
        .map((step, index) => ({ key: nameOf(step), code: answers[index] && answers[index].code }))
        .filter((one) => one.code !== undefined)
    }));
  },
  print: (result) => result.pressed.map((one) => `${one.key} ${one.code}`).join('\n')
});
