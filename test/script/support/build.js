'use strict';

// Where the build lies: QUIRAVENT_BUILD, or the default preset's folder.

const path = require('path');

const projectFolder = path.resolve(__dirname, '..', '..', '..');
const buildFolder = process.env.QUIRAVENT_BUILD
  ? path.resolve(process.env.QUIRAVENT_BUILD)
  : path.join(projectFolder, 'build', 'release');
const modulePath = path.join(buildFolder, 'quiravent.node');

/** What runs scripts: this runtime, or QUIRAVENT_RUNTIME (another one, perhaps in an emulator). */
const runtime = process.env.QUIRAVENT_RUNTIME || process.execPath;

module.exports = { projectFolder, buildFolder, modulePath, runtime };
