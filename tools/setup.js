'use strict';

// npm run setup: everything that building, testing and linting need, and nothing else.

const { main } = require('./lib/run');
const { setup } = require('./lib/setup');

main(() => setup(['build', 'lint']));
