'use strict';

// npm run build [-- PRESET [TARGET...]]: set-up, then the build; the preset is release by default.

const { build } = require('./lib/build');
const { main } = require('./lib/run');
const { setup } = require('./lib/setup');

main((words) => {
  setup(['build']);
  build(words[0] || 'release', words.slice(1));
});
