'use strict';

// The desktop device's drawing operations for the vector unit of 32-bit ARM, compared with the
// portable ones in an emulator.

const fs = require('fs');
const path = require('path');
const { makeFiles } = require('./made-files');
const { mustRun, root, run } = require('./run');

const GRAPHICS = ['Kernels', 'KernelsScalar', 'ScaleFilter', 'Surface', 'simd/KernelsNeon'];
const TEST = ['KernelComparison', 'kernelCheck'];

const folder = path.join(root, 'build', 'runtimes', 'armv7l-kernels');
const NAME = 'kernel-check';

const device = path.join(root, 'devices', 'desktop');
const test = path.join(root, 'test', 'native', 'graphics');
const sources = GRAPHICS.map((name) => path.join(device, 'graphics', `${name}.cpp`)).concat(
  TEST.map((name) => path.join(test, `${name}.cpp`))
);

/** What the compiler for ARM answers to words beside the options and sources. */
function compile(words) {
  const options = ['-std=c++17', '-O2', '-mfpu=neon', '-static', `-I${device}`, `-I${test}`];
  const command = options.concat(sources, words);
  return mustRun('arm-linux-gnueabihf-g++', command, { capture: true }).stdout;
}

/** Builds the program that compares, where sources or headers have changed. */
function buildKernels() {
  const rules = compile(['-MM']).replace(/\\\n/g, ' ');
  const files = rules.split(/\s+/).filter((word) => path.isAbsolute(word));
  makeFiles(
    folder,
    [NAME],
    files.map((file) => fs.readFileSync(file)),
    (work) => compile(['-o', path.join(work, NAME)])
  );
}

/** @returns {{passed: number, failed: number}} */
function checkKernels() {
  buildKernels();
  const result = run('qemu-arm-static', [path.join(folder, NAME)], { capture: true });
  process.stdout.write(result.stdout + result.stderr);
  const found = result.stdout.match(/(\d+) passed, (\d+) failed\s*$/);
  const passed = found && result.stdout.indexOf('neon: equal') >= 0;
  return passed ? { passed: Number(found[1]), failed: Number(found[2]) } : { passed: 0, failed: 1 };
}

module.exports = { buildKernels, checkKernels };
