'use strict';

// npm run build:device: the module for set-top boxes (32-bit ARM, module interface 51), checked and
// stripped as build/armhf/quiravent.node, with its symbols beside it for a debugger, and as a
// package folder to be copied to a device. Tells what makes up its size.

const { buildForDevice } = require('./lib/device-build');
const { main } = require('./lib/run');
const { setup } = require('./lib/setup');
const { describeSize } = require('./lib/size');

main(() => {
  setup(['build', 'arm']);
  const result = buildForDevice();
  console.log(describeSize(result.built, result.symbols));
  console.log(`\nThe package for a device is in ${result.packageFolder}`);
});
