'use strict';

// The Debian packages that the project needs.

const fs = require('fs');
const path = require('path');
const { root, run } = require('./run');

const packageList = path.join(root, 'tools', 'packages.txt');

/** The packages of tools/packages.txt: { group, name, purpose }; of one group when it is named. */
function readPackages(group) {
  return fs
    .readFileSync(packageList, 'utf8')
    .split('\n')
    .filter((line) => /^[a-z]/.test(line))
    .map((line) => line.trim().split(/\s+/))
    .map((words) => ({ group: words[0], name: words[1], purpose: words.slice(2).join(' ') }))
    .filter((one) => group === undefined || one.group === group);
}

function isInstalled(name) {
  const answer = run('dpkg-query', ['-W', '-f', '${db:Status-Status}', name], { capture: true });
  return answer.status === 0 && answer.stdout === 'installed';
}

module.exports = { isInstalled, readPackages };
