'use strict';

const fs = require('fs');
const path = require('path');
const test = require('tape');
const { spoilLibraries } = require('../device/support/broken-libraries');
const { buildFolder } = require('../script/support/build');
const { inFolder, launch } = require('./support/launcher');

/** The findings by name, and the exit status. */
function examine(variables) {
  return launch(['doctor', '--json'], variables).then((result) => {
    const findings = { status: result.code, ok: JSON.parse(result.stdout).ok };
    JSON.parse(result.stdout).checks.forEach((check) => (findings[check.name] = check));
    return findings;
  });
}

function essence(check) {
  return [check.ok, check.needed, check.mend];
}

test('what stands is found, and needs no command', (t) =>
  examine({ DISPLAY: ':7' }).then((found) => {
    const needed = 'g++,cmake,ninja-build,runtime headers,npm packages,native module,device';
    needed
      .split(',')
      .forEach((name) => t.deepEqual(essence(found[name]), [true, true, null], name));
    t.deepEqual(essence(found.display), [true, false, null]);
    t.equal(found.display.detail, "':7'");
  }));

test('a build that is missing, or broken, is told with the command that makes one', (t) =>
  inFolder((folder, write) => {
    const expect = (detail) =>
      examine({ QUIRAVENT_BUILD: folder }).then((found) => {
        t.deepEqual([found.status, found.ok], [1, false]);
        t.deepEqual(essence(found['native module']), [false, true, 'npm run build']);
        t.ok(detail.test(found['native module'].detail), found['native module'].detail);
      });
    return expect(/^not built$/)
      .then(() => write('quiravent.node', 'no module'))
      .then(() => expect(/^Error: .*quiravent\.node.*$/));
  }));

test('programs are looked for where the shell would find them', (t) =>
  inFolder((folder) => {
    fs.symlinkSync('/bin/true', path.join(folder, 'cmake'));
    return examine({ PATH: folder }).then((found) => {
      t.equal(found.status, 1);
      t.deepEqual(essence(found['g++']), [false, true, 'sudo apt-get install g++']);
      t.ok(found.cmake.ok);
      t.equal(found['Debian packages'].ok, false, 'without dpkg, packages are no guess');
    });
  }));

test('the readable report names each command once, what is needed first', (t) =>
  inFolder((folder) =>
    launch(['doctor'], { QUIRAVENT_BUILD: folder, DISPLAY: '', WAYLAND_DISPLAY: '' }).then(
      ({ code, stdout }) => {
        t.equal(code, 1);
        [
          /\n {2}MISSING {2}native module +not built\n/,
          /\n {2}absent {3}display +none/,
          /To mend what is needed:\n( {2}.*\n)* {2}npm run build\n/
        ].forEach((pattern) => t.ok(pattern.test(stdout), String(pattern)));
        t.equal(stdout.split('npm run build').length, 2);
      }
    )
  ));

test('libraries that the device opens late are tried', (t) =>
  inFolder((folder) => {
    spoilLibraries(folder, (file) => fs.writeFileSync(file, ''));
    return examine({ LD_LIBRARY_PATH: buildFolder })
      .then((found) => {
        t.deepEqual(essence(found.media), [true, false, null], found.media.detail);
        t.deepEqual(essence(found.network), [true, false, null], found.network.detail);
        return examine({ LD_LIBRARY_PATH: [folder, buildFolder].join(path.delimiter) });
      })
      .then((found) => {
        t.equal(found.status, 0);
        t.deepEqual(essence(found.media), [false, false, 'sudo apt-get install ffmpeg']);
        t.ok(/libavformat\.so\.\d+: file too short$/.test(found.media.detail), found.media.detail);
        t.deepEqual(essence(found.network), [false, false, 'sudo apt-get install libcurl3-gnutls']);
        t.ok(/libcurl.*: file too short$/.test(found.network.detail), found.network.detail);
      });
  }));
