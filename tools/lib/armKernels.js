'use strict';

// The desktop device's drawing operations for the vector unit of 32-bit ARM, compared with the
// portable ones in an emulator.

const fs = require('fs');
const path = require('path');
const { mustRun, root, run } = require('./run');

const GRAPHICS = ['Kernels', 'KernelsScalar', 'ScaleFilter', 'Surface', 'simd/KernelsNeon'];
const TEST = ['KernelComparison', 'kernelCheck'];

function build(program) {
  const device = path.join(root, 'devices', 'desktop');
  const test = path.join(root, 'test', 'native', 'graphics');
  const sources = GRAPHICS.map((name) => path.join(device, 'graphics', `${name}.cpp`)).concat(
    TEST.map((name) => path.join(test, `${name}.cpp`))
  );
  const options = ['-std=c++17', '-O2', '-mfpu=neon', '-static', `-I${device}`, `-I${test}`];
  mustRun('arm-linux-gnueabihf-g++', options.concat(sources, '-o', program), { capture: true });
}

/** @returns {{passed: number, failed: number}} */
function checkKernels() {
  const folder = path.join(root, 'build', 'runtimes');
  fs.mkdirSync(folder, { recursive: true });
  const program = path.join(folder, 'armv7l-kernels');
  build(program);
  const result = run('qemu-arm-static', [program], { capture: true });
  process.stdout.write(result.stdout + result.stderr);
  const found = result.stdout.match(/(\d+) passed, (\d+) failed\s*$/);
  const passed = found && result.stdout.indexOf('neon: equal') >= 0;
  return passed ? { passed: Number(found[1]), failed: Number(found[2]) } : { passed: 0, failed: 1 };
}

module.exports = { checkKernels };
