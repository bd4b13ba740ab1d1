'use strict';

// Loads the native module.

module.exports = require(require('./native-module').findNativeModule());
