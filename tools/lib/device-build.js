'use strict';

// The module for set-top boxes: built, checked, and packed.

const path = require('path');
const { check } = require('../check-module');
const { buildIn, configureIn } = require('./build');
const { makePackage } = require('./device-package');
const { mustRun, root } = require('./run');
const { fetchRuntime } = require('./runtimes');

/** A runtime whose headers are those of the module interface of the device. */
const RUNTIME = '7.10.1';
const INTERFACE = 51;

const folder = path.join(root, 'build', 'armhf');
const built = path.join(folder, 'quiravent.node');
const symbols = `${built}.debug`;
const packageFolder = path.join(folder, 'package');

const runtimeForDevice = () => fetchRuntime('x64', RUNTIME);

/** Does that part of buildForDevice which takes long; another process may do the same meanwhile. */
function compileForDevice() {
  configureIn(folder, ['--preset', 'armhf', `-DNODE_HEADERS=${runtimeForDevice().headers}`]);
  buildIn(folder, ['quiravent', 'module_record']);
}

function splitSymbols() {
  mustRun('arm-linux-gnueabihf-objcopy', ['--only-keep-debug', built, symbols]);
  mustRun('arm-linux-gnueabihf-strip', [built]);
}

/**
 * Builds for the device; throws a Failure where the module isn't as it should be.
 * @returns {{built: string, symbols: string, packageFolder: string}} files and folder
 */
function buildForDevice() {
  // Linked anew, since the one of the last time has been stripped.
  mustRun('rm', ['-f', built]);
  compileForDevice();
  splitSymbols();
  check(built, folder, INTERFACE, runtimeForDevice().program);
  mustRun('rm', ['-rf', packageFolder]);
  makePackage(packageFolder, built, 'arm');
  return { built, symbols, packageFolder };
}

module.exports = { buildForDevice, compileForDevice };
