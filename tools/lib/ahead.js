'use strict';

// What suites need is built while those before them run: many a test waits.

const { spawn } = require('child_process');
const fs = require('fs');
const path = require('path');
const { attempt, mustRun, root } = require('./run');
const { setup } = require('./setup');

const folder = path.join(root, 'build', 'ahead');

/** A build often has but one thing to do at a time. */
const BUILDERS = 2;

const packagesFor = (suite) => (suite.packages ? [() => setup(suite.packages)] : []);
const buildsFor = (suite) => suite.builds || [];

/** What a suite needs, in functions that several processes may call. */
const needsOf = (suite) => packagesFor(suite).concat(buildsFor(suite));

/** Starts a process that builds. What it says is kept. */
function startBuilder(number, names) {
  const log = fs.openSync(path.join(folder, `${number}.log`), 'w');
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

/**
 * Has other processes build what suites will need, while this one runs those before them. They give
 * way to the tests, and stop after this process. What they can't build fails again, and is told, when
 * its suite is due.
 */
function buildAhead(suites) {
  const names = suites.filter((suite) => needsOf(suite).length > 0).map((suite) => suite.name);
  mustRun('rm', ['-rf', folder]);
  fs.mkdirSync(folder, { recursive: true });
  if (names.length === 0) return;
  for (let number = 1; number <= BUILDERS; number++) startBuilder(number, names);
}

/** Whether nobody has taken the piece of work of that number before. */
function take(number) {
  try {
    fs.mkdirSync(path.join(folder, String(number)));
    return true;
  } catch (error) {
    return false;
  }
}

/** Builds what suites need and no other builder does. */
function helpToBuild(suites) {
  const parent = process.ppid;
  // Whoever builds needs packages that another is to install; and would wait for another who builds in
  // the same folder.
  const [besides, others] = [true, false].map((wanted) =>
    suites.filter((suite) => Boolean(suite.isBesides) === wanted)
  );
  const needs = [].concat(...suites.map(packagesFor), ...others.concat(besides).map(buildsFor));
  needs.forEach((need, number) => {
    if (process.ppid === parent && take(number)) attempt(need, console.log);
  });
}

module.exports = { buildAhead, helpToBuild, needsOf };
