'use strict';

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const quiravent = require('./support/module');
const { makePackage } = require('../../tools/lib/device-package');
const { modulePath, runtime } = require('./support/build');

/** The package as it lies on a device, in node_modules of an application's folder. */
function install(t) {
  const application = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-package-'));
  t.teardown(() => spawnSync('rm', ['-rf', application]));
  const folder = path.join(application, 'node_modules', 'quiravent');
  makePackage(folder, modulePath, process.arch);
  return { application, folder };
}

test('the package for devices is one to an application', (t) => {
  const installed = install(t);
  const script = `
    const quiravent = require('quiravent');
    quiravent.graphicServices.getTargetCanvas().fillRect(1, 2, 3, 4);
    console.log(Object.keys(quiravent).join() + ' ' + require('quiravent/lib/keys').Enter);`;
  const run = spawnSync(runtime, ['-e', script], { cwd: installed.application, encoding: 'utf8' });
  t.equal(run.stderr, '');
  t.equal(run.stdout.trim(), `${Object.keys(quiravent)} 13`);
  t.end();
});

test('what the package says of itself is there', (t) => {
  const folder = install(t).folder;
  const manifest = JSON.parse(fs.readFileSync(path.join(folder, 'package.json'), 'utf8'));
  const named = [manifest.main, manifest.types, 'LICENSE', 'quiravent.node'];
  const pages = ['README.md', 'docs/application-guide.md', 'docs/porting-guide.md'];
  pages.forEach((page) => {
    const text = fs.readFileSync(path.join(folder, page), 'utf8');
    const links = text.match(/\]\((?!https?:)[^)#]+/g) || [];
    links.forEach((link) => named.push(path.join(path.dirname(page), link.slice(2))));
  });
  named.forEach((name) => t.ok(fs.existsSync(path.join(folder, name)), name));
  t.end();
});
