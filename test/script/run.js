'use strict';

// Runs the tests of this folder over the recorder: node test/script/run.js [--filter TEXT]

const path = require('path');
const { runAndExit } = require('../run-tap');
const { buildFolder } = require('./support/build');

const library = path.join(buildFolder, 'recorder');
runAndExit([__dirname, '--library', library].concat(process.argv.slice(2)));
