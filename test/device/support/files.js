'use strict';

const path = require('path');
const { buildFolder, projectFolder } = require('../../script/support/build');

const native = path.join(buildFolder, 'test', 'native');

module.exports = {
  root: projectFolder,
  buildFolder,
  /** A medium that the native tests have made, by its name; and a multiplex. */
  medium: (name) => path.join(native, 'media', 'media', name),
  multiplex: (name) => path.join(native, 'television', 'multiplexes', name)
};
