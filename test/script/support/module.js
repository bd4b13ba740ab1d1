'use strict';

// The module under test, over whichever porting layer the loader was told of.

module.exports = require(require('./build').modulePath);
