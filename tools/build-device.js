'use strict';

// npm run build:device: the module for set-top boxes (32-bit ARM, module interface 51), checked and
// stripped as build/armhf/quiravent.node, and as a package folder to be copied to a device.

const fs = require('fs');
const path = require('path');
const { check } = require('./check-module');
const { main, mustRun, root } = require('./lib/run');
const { fetchRuntime } = require('./lib/runtimes');
const { setup } = require('./lib/setup');

/** A runtime whose headers are those of module interface 51. */
const RUNTIME = '7.10.1';

const folder = path.join(root, 'build', 'armhf');
const built = path.join(folder, 'quiravent.node');

function compile() {
  const headers = fetchRuntime('x64', RUNTIME).headers;
  mustRun('cmake', ['--preset', 'armhf', `-DNODE_HEADERS=${headers}`], { capture: true });
  mustRun('cmake', ['--build', folder, '--target', 'quiravent']);
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
  compile();
  check([built]);
  assemble();
  console.log(
    `${fs.statSync(built).size} bytes; the package is in ${path.join(folder, 'package')}`
  );
});
