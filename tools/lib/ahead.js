'use strict';

const { spawn } = require('child_process');
const fs = require('fs');
const path = require('path');
const { root } = require('./run');

/**
 * Has another process build what suites will need, while this one runs those before them: many a
 * test waits. It gives way to the tests, says what it does in build/ahead.log, and stops after this
 * process. What it can't build fails again, and is told, when its suite is due.
 */
function buildAhead(suites) {
  const names = suites.filter((suite) => suite.prepare).map((suite) => suite.name);
  if (names.length === 0) return;
  fs.mkdirSync(path.join(root, 'build'), { recursive: true });
  const log = fs.openSync(path.join(root, 'build', 'ahead.log'), 'w');
  const program = path.join(root, 'tools', 'build-ahead.js');
  const child = spawn('nice', ['-n', '19', process.execPath, program].concat(names), {
    cwd: root,
    stdio: ['ignore', log, log]
  });
  fs.closeSync(log);
  // Without it each suite builds for itself.
  child.on('error', () => {});
  child.unref();
}

module.exports = { buildAhead };
