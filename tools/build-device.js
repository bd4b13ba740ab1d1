'use strict';

// npm run build:device: the module for set-top boxes (32-bit ARM, module interface 51), checked and
// stripped as build/armhf/quiravent.node, with its symbols beside it for a debugger, and as a
// package folder to be copied to a device. Tells what makes up its size.

const fs = require('fs');
const path = require('path');
const { check } = require('./check-module');
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

function compile(runtime) {
  const headers = `-DNODE_HEADERS=${runtime.headers}`;
  mustRun('cmake', ['--preset', 'armhf', headers], { capture: true });
  // Linked anew, since the one of the last time has been stripped.
  mustRun('rm', ['-f', built]);
  mustRun('cmake', ['--build', folder, '--target', 'quiravent', 'module_record']);
  mustRun('arm-linux-gnueabihf-objcopy', ['--only-keep-debug', built, symbols]);
  mustRun('arm-linux-gnueabihf-strip', [built]);
}

/** Copies a file of the project to its place in the package. */
function copy(from, to) {
  const target = path.join(folder, 'package', to);
  fs.mkdirSync(path.dirname(target), { recursive: true });
  fs.copyFileSync(path.join(root, from), target);
}

function writeManifest() {
  const own = require(path.join(root, 'package.json'));
  const manifest = {
    name: own.name,
    version: own.version,
    description: own.description,
    license: own.license,
    main: own.main,
    types: own.types,
    exports: own.exports,
    os: ['linux'],
    cpu: ['arm']
  };
  const text = JSON.stringify(manifest, null, 2) + '\n';
  fs.writeFileSync(path.join(folder, 'package', 'package.json'), text);
}

function assemble() {
  mustRun('rm', ['-rf', path.join(folder, 'package')]);
  copy('build/armhf/quiravent.node', 'quiravent.node');
  fs.readdirSync(path.join(root, 'lib')).forEach((name) => copy(`lib/${name}`, `lib/${name}`));
  copy('docs/application-guide.md', 'docs/application-guide.md');
  copy('docs/on-a-device.md', 'README.md');
  copy('LICENSE', 'LICENSE');
  writeManifest();
}

main(() => {
  setup(['build', 'arm']);
  const runtime = fetchRuntime('x64', RUNTIME);
  compile(runtime);
  check(built, folder, INTERFACE, runtime.program);
  assemble();
  console.log(describeSize(built, symbols));
  console.log(`\nThe package for a device is in ${path.join(folder, 'package')}`);
});
