'use strict';

// On the module path of an application that the launcher runs, so that require('quiravent') works
// in a file anywhere on the disk.

module.exports = require('../../..');
