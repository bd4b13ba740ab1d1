'use strict';

// What must be there before anything can be built: system packages, npm packages, the headers of
// the script runtime. Each is looked at only when what asks for it has changed.

const crypto = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { isInstalled, readPackages } = require('./packages');
const { Failure, mustRun, root, run } = require('./run');
const { findNodeHeaders } = require('../node-headers');

const stampFolder = path.join(root, 'build', 'setup');

/** The words in front of apt-get with which this user may install, or null. */
function installer() {
  if (process.getuid() === 0) return [];
  return run('sudo', ['-n', 'true'], { capture: true }).status === 0 ? ['sudo', '-n'] : null;
}

/** Runs apt-get while no other tool of this project does. */
function installWith(prefix, packages) {
  fs.mkdirSync(stampFolder, { recursive: true });
  const lock = ['flock', path.join(stampFolder, 'packages.lock')];
  const apt = prefix.concat(lock, 'env', 'DEBIAN_FRONTEND=noninteractive', 'apt-get', '-q', '-y');
  const call = (words) => run(apt[0], apt.slice(1).concat(words), { capture: true });
  call(['update']);
  const result = call(['install', '--no-install-recommends'].concat(packages));
  if (result.status !== 0) process.stderr.write(result.stdout + result.stderr);
  return result.status === 0;
}

const packagesOf = (group) => readPackages(group).map((one) => one.name);
const commandFor = (packages) => `sudo apt-get install ${packages.join(' ')}`;

/** installer(), which there must be. missing: packages that are to be installed */
function mustHaveInstaller(missing) {
  const prefix = installer();
  if (prefix) return prefix;
  throw new Failure(
    `these Debian packages are missing. Install them with:\n\n  ${commandFor(missing)}\n`
  );
}

function installPackages(packages) {
  const missing = packages.filter((name) => !isInstalled(name));
  if (missing.length === 0) return;
  const prefix = mustHaveInstaller(missing);
  console.log(`Installing Debian packages: ${missing.join(' ')}`);
  if (!installWith(prefix, missing)) {
    throw new Failure(
      `apt-get could not install what is missing. To try by hand:\n\n  ${commandFor(missing)}\n`
    );
  }
}

/** Fails unless the packages of the groups are there, or setup can install them. */
function checkInstallable(groups) {
  const packages = [].concat(...groups.map(packagesOf));
  const missing = packages.filter((name) => !isInstalled(name));
  if (missing.length > 0) mustHaveInstaller(missing);
}

function installModules() {
  console.log('Installing npm packages');
  mustRun('npm', ['ci', '--ignore-scripts', '--no-audit', '--no-fund', '--loglevel=error'], {
    capture: true
  });
}

/** Takes the headers out of the npm package that holds this very runtime. */
function unpackHeaders() {
  const version = process.versions.node;
  const spec = `node-linux-${process.arch}@${version}`;
  const target = path.join(root, '.cache', `node-headers-${version}`);
  const work = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-headers-'));
  console.log(`Fetching the headers of runtime ${version}`);
  try {
    mustRun('npm', ['pack', spec, '--silent', '--pack-destination', work], { capture: true });
    const archive = path.join(work, fs.readdirSync(work)[0]);
    mustRun('tar', ['-xzf', archive, '-C', work, 'package/include/node'], { capture: true });
    fs.mkdirSync(path.dirname(target), { recursive: true });
    mustRun('cp', ['-r', path.join(work, 'package', 'include', 'node'), target]);
  } finally {
    mustRun('rm', ['-rf', work]);
  }
}

function installHeaders() {
  if (findNodeHeaders()) return;
  const prefix = installer();
  if (prefix) installWith(prefix, ['libnode-dev']);
  if (!findNodeHeaders()) unpackHeaders();
  if (!findNodeHeaders()) {
    throw new Failure(
      `no headers of runtime ${process.versions.node} were found. Install libnode-dev, or a ` +
        'Node.js that comes with its include folder.'
    );
  }
}

/** Does what the inputs ask for, unless it was done for the same ones and is still there. */
function once(name, inputs, isThere, action) {
  const hash = crypto.createHash('sha256');
  inputs.forEach((input) => hash.update(input));
  const digest = hash.digest('hex');
  const stamp = path.join(stampFolder, name);
  const done = fs.existsSync(stamp) && fs.readFileSync(stamp, 'utf8') === digest;
  if (done && isThere()) return;
  action();
  fs.mkdirSync(stampFolder, { recursive: true });
  fs.writeFileSync(stamp, digest);
}

const always = () => true;

/** Sets up what the groups of tools/packages.txt and the build ask for. */
function setup(groups) {
  groups.forEach((group) => {
    const packages = packagesOf(group);
    once(`packages-${group}`, packages, always, () => installPackages(packages));
  });
  const lock = fs.readFileSync(path.join(root, 'package-lock.json'));
  const modules = path.join(root, 'node_modules', 'nan', 'nan.h');
  once('modules', [lock], () => fs.existsSync(modules), installModules);
  once('headers', [process.version, process.execPath], always, installHeaders);
}

module.exports = { checkInstallable, setup };
