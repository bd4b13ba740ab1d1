'use strict';

// What the launcher, and in a checkout the build, want of this machine. Each check is
// { name, ok, needed, detail, mend }: `needed` is false for what one can do without, `mend` the
// command that brings what is missing; null when nothing is, or no command brings it.

const { spawnSync } = require('child_process');
const fs = require('fs');
const path = require('path');
const { moduleEnvironment, nativeModule } = require('./environment');
const { Failure } = require('./failures');

const root = path.join(__dirname, '..', '..');
const INSTALL = 'sudo apt-get install';
const layer = 'libquiravent_porting_layer.so';

/** The build's own tools are there in a checkout only; an installed package builds nothing. */
const isCheckout = fs.existsSync(path.join(root, 'tools', 'packages.txt'));

function check(name, ok, needed, detail, mend) {
  return { name, ok, needed, detail, mend: ok ? null : mend };
}

function isOnPath(program) {
  return (process.env.PATH || '')
    .split(path.delimiter)
    .some((folder) => fs.existsSync(path.join(folder, program)));
}

function checkPrograms() {
  return ['g++', 'cmake'].map((program) => {
    const ok = isOnPath(program);
    return check(program, ok, true, ok ? 'found' : 'not found', `${INSTALL} ${program}`);
  });
}

function checkPackages() {
  const { isInstalled, readPackages } = require('../../tools/lib/packages');
  if (!isOnPath('dpkg-query')) {
    const detail =
      'no dpkg-query here, so that the libraries of tools/packages.txt are not looked for';
    return [check('Debian packages', false, false, detail, null)];
  }
  return readPackages().map((one) =>
    check(
      one.name,
      isInstalled(one.name),
      one.group === 'build',
      one.purpose,
      `${INSTALL} ${one.name}`
    )
  );
}

function checkHeaders() {
  const folder = require('../../tools/node-headers').findNodeHeaders();
  const detail = folder || `none of runtime ${process.versions.node} found`;
  return [check('runtime headers', folder !== null, true, detail, 'npm run setup')];
}

function checkModules() {
  const ok = fs.existsSync(path.join(root, 'node_modules', 'nan'));
  const detail = ok ? 'installed' : 'not installed';
  return [check('npm packages', ok, true, detail, 'npm ci --ignore-scripts')];
}

/** The first line of what went wrong that isn't a place in a source. */
function reasonIn(errors) {
  const line = errors.split('\n').find((text) => /^\w*Error: /.test(text));
  return line || errors.trim().split('\n')[0] || 'it ended without a word';
}

/**
 * Runs a script in a process of its own, with the environment that an application gets; `quiravent`
 * is the module.
 */
function runWith(file, script) {
  const begin = `const quiravent = require(${JSON.stringify(file)});`;
  return spawnSync(process.execPath, ['-e', begin + script], {
    encoding: 'utf8',
    env: Object.assign(moduleEnvironment(process.env), {
      QUIRAVENT_AUDIO: 'null',
      QUIRAVENT_DISPLAY: 'headless',
      QUIRAVENT_LOG: 'warning'
    })
  });
}

/** Why the module can't be loaded; null when it can. */
function tryModule(file) {
  const answer = runWith(file, '');
  return answer.status === 0 ? null : reasonIn(answer.stderr);
}

/** What the device opens when it is first wanted: its use, a script that wants it, its package. */
const LATE_LIBRARIES = [
  {
    name: 'media',
    script: `quiravent.mediaServices.getPlayer('/', { x: 0, y: 0, w: 1, h: 1 },
      () => process.exit(0));`,
    libraries: 'ffmpeg'
  },
  {
    name: 'network',
    script: "quiravent.graphicServices.loadImage('http://127.0.0.1:1/', () => process.exit(0));",
    libraries: 'libcurl3-gnutls'
  }
];

/** Whether the libraries are there that an application without media or network does without. */
function checkLateLibraries(file) {
  return LATE_LIBRARIES.map((one) => {
    const reason = /can't be used: ([^;\n]*)/.exec(runWith(file, one.script).stderr);
    const detail = reason ? reason[1] : 'its libraries are found';
    return check(one.name, reason === null, false, detail, `${INSTALL} ${one.libraries}`);
  });
}

function checkBuild() {
  const mend = isCheckout ? 'npm run build' : 'npm install quiravent';
  let file = null;
  try {
    file = nativeModule();
  } catch (error) {
    if (!(error instanceof Failure)) throw error;
    return [check('native module', false, true, 'not built', mend)];
  }
  const device = path.join(path.dirname(file), layer);
  const reason = tryModule(file);
  return [
    check('native module', reason === null, true, reason || file, mend),
    check('device', fs.existsSync(device), true, device, mend)
  ].concat(reason === null ? checkLateLibraries(file) : []);
}

function checkDisplay() {
  const name = process.env.WAYLAND_DISPLAY || process.env.DISPLAY;
  const detail = name ? `'${name}'` : 'none: applications run without a window';
  return [check('display', Boolean(name), false, detail, 'export DISPLAY=:0')];
}

function holdsFont(folder) {
  let names = [];
  try {
    names = fs.readdirSync(folder);
  } catch (error) {
    return false;
  }
  return names.some((name) => /\.(ttf|otf)$/i.test(name) || holdsFont(path.join(folder, name)));
}

function checkFonts() {
  const ok = ['/usr/share/fonts', '/usr/local/share/fonts'].some(holdsFont);
  const detail = ok ? 'found' : 'none, for applications that bring none along';
  return [check('fonts', ok, false, detail, `${INSTALL} fonts-dejavu-core`)];
}

/** Looks at everything. */
function checkMachine() {
  const building = isCheckout ? [checkPrograms, checkPackages, checkHeaders, checkModules] : [];
  const checks = building.concat([checkBuild, checkDisplay, checkFonts]);
  return [].concat.apply(
    [],
    checks.map((one) => one())
  );
}

module.exports = { checkMachine, INSTALL };
