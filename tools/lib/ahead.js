'use strict';

// What suites need is built while those before them run: many a test waits.

const { spawn } = require('child_process');
const fs = require('fs');
const path = require('path');
const { attempt, mustRun, root } = require('./run');
const { setup } = require('./setup');

const folder = path.join(root, 'build', 'ahead');

/**
 * A build often has but one thing to do at a time: then a second builder goes on from the other end.
 * Both give way to the tests, and the second to the first.
 */
const BUILDERS = [
  { name: 'first', starter: ['nice', '-n', '19'] },
  { name: 'last', starter: ['chrt', '--idle', '0'] }
];

const packagesFor = (suite) => (suite.packages ? [() => setup(suite.packages)] : []);
const buildsFor = (suite) => suite.builds || [];

/** What a suite needs, in functions that several processes may call. */
const needsOf = (suite) => packagesFor(suite).concat(buildsFor(suite));

/** Starts a process that builds. What it says is kept. */
function startBuilder(builder, names) {
  const log = fs.openSync(path.join(folder, `${builder.name}.log`), 'w');
  const program = path.join(root, 'tools', 'build-ahead.js');
  const words = builder.starter.concat(process.execPath, program, builder.name, names);
  const child = spawn(words[0], words.slice(1), { cwd: root, stdio: ['ignore', log, log] });
  fs.closeSync(log);
  // Without it each suite builds for itself.
  child.on('error', () => {});
  child.unref();
}

/**
 * Has other processes build what suites will need, while this one runs those before them. They stop
 * after this process. What they can't build fails again, and is told, when its suite is due.
 */
function buildAhead(suites) {
  const names = suites.filter((suite) => needsOf(suite).length > 0).map((suite) => suite.name);
  mustRun('rm', ['-rf', folder]);
  fs.mkdirSync(folder, { recursive: true });
  if (names.length === 0) return;
  BUILDERS.forEach((builder) => startBuilder(builder, names));
}

/** Whether nobody has taken that piece of work before. */
function take(name) {
  try {
    fs.mkdirSync(path.join(folder, name));
    return true;
  } catch (error) {
    return false;
  }
}

/** Pieces of work, { name, need }, in stages that each builder goes through. */
function worksOf(suites) {
  const [besides, others] = [true, false].map((wanted) =>
    suites.filter((suite) => Boolean(suite.isBesides) === wanted)
  );
  // Whoever builds needs packages that another is to install; and would wait for another who builds in
  // the same folder.
  const stages = [suites.map(packagesFor), others.map(buildsFor), besides.map(buildsFor)];
  return stages.map((needs, stage) =>
    [].concat(...needs).map((need, index) => ({ name: `${stage}-${index}`, need }))
  );
}

/** Builds what suites need and no other builder does. which: name of a builder */
function helpToBuild(which, suites) {
  const parent = process.ppid;
  const stages = worksOf(suites);
  if (which === 'last') stages.forEach((works) => works.reverse());
  const works = [].concat(...stages);
  works.forEach(({ name, need }) => {
    if (process.ppid === parent && take(name)) attempt(need, console.log);
  });
}

module.exports = { buildAhead, helpToBuild, needsOf };
