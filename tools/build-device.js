'use strict';

// npm run build:device: the module for set-top boxes (32-bit ARM, module interface 51), checked and
// stripped as build/armhf/quiravent.node, with its symbols beside it for a debugger, and as a
// package folder to be copied to a device. Tells what makes up its size.

const path = require('path');
const { check } = require('./check-module');
const { makePackage } = require('./lib/device-package');
const { main, mustRun, root } = require('./lib/run');
const { fetchRuntime } = require('./lib/runtimes');
const { setup } = require('./lib/setup');
const { describeSize } = require('./lib/size');

/** A runtime whose headers are those of module interface 51. */
const RUNTIME = '7.10.1';
const INTERFACE = 51;

const folder = path.join(root, 'build', 'armhf');
const built = path.join(folder, 'quiravent.node');
const symbols = `${built}.debug`;
const packageFolder = path.join(folder, 'package');

function compile(runtime) {
  const headers = `-DNODE_HEADERS=${runtime.headers}`;
  mustRun('cmake', ['--preset', 'armhf', headers], { capture: true });
  // Linked anew, since the one of the last time has been stripped.
  mustRun('rm', ['-f', built]);
  mustRun('cmake', ['--build', folder, '--target', 'quiravent', 'module_record']);
  mustRun('arm-linux-gnueabihf-objcopy', ['--only-keep-debug', built, symbols]);
  mustRun('arm-linux-gnueabihf-strip', [built]);
}

main(() => {
  setup(['build', 'arm']);
  const runtime = fetchRuntime('x64', RUNTIME);
  compile(runtime);
  check(built, folder, INTERFACE, runtime.program);
  mustRun('rm', ['-rf', packageFolder]);
  makePackage(packageFolder, built, 'arm');
  console.log(describeSize(built, symbols));
  console.log(`\nThe package for a device is in ${packageFolder}`);
});
