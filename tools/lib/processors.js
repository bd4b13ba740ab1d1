'use strict';

// The processors that the module is built for: what a build and a run on this machine need.

const fs = require('fs');
const path = require('path');
const { root } = require('./run');

/**
 * By npm's names. slowness: how many times slower an emulated one is taken to be; it makes the
 * tests wait longer and load less.
 */
const processors = {
  x64: { cmake: [], emulator: [], slowness: 1 },
  armv7l: {
    cmake: [`-DCMAKE_TOOLCHAIN_FILE=${path.join(root, 'cmake', 'toolchains', 'armhf.cmake')}`],
    emulator: ['qemu-arm-static', '-L', '/usr/arm-linux-gnueabihf'],
    slowness: 8
  }
};

/** EM_ARM of the ELF format. */
const ARM = 40;

/** The words before a program of a file's processor that make it run here. */
function emulatorOf(file) {
  const header = Buffer.alloc(20);
  const descriptor = fs.openSync(file, 'r');
  fs.readSync(descriptor, header, 0, header.length, 0);
  fs.closeSync(descriptor);
  return header.readUInt16LE(18) === ARM ? processors.armv7l.emulator : [];
}

module.exports = { emulatorOf, processors };
