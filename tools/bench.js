'use strict';

// npm run bench [-- --quick] [-- --cpu-time] [-- --only NAME] [-- TABLE...]: set-up, build, then the
// tables of the benchmark, each the index.js of a folder of bench/; all of them unless some are
// named. NAME is part of a scene's name. --cpu-time measures the processor's time instead of the
// time that passes, for a machine that is busy. The figures are kept in build/bench.json;
// --document puts them into docs/performance.md.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { build } = require('./lib/build');
const { Failure, main, mustRun, root } = require('./lib/run');
const { setup } = require('./lib/setup');

const folder = path.join(root, 'bench');

/** Folders that hold a table, in their order. */
function tables() {
  return fs
    .readdirSync(folder)
    .filter((name) => fs.existsSync(path.join(folder, name, 'index.js')))
    .sort();
}

/** Options go to the tables, other words name tables. */
function readWords(words) {
  const options = [];
  const named = [];
  const isDocumented = words.indexOf('--document') >= 0;
  for (let i = 0; i < words.length; ++i) {
    if (words[i] === '--quick' || words[i] === '--cpu-time') options.push(words[i]);
    else if (words[i] === '--only') options.push(words[i], words[++i]);
    else if (words[i] !== '--document') named.push(words[i]);
  }
  if (options.indexOf(undefined) >= 0) throw new Failure('--only wants the name of a scene.');
  const unknown = named.find((name) => tables().indexOf(name) < 0);
  if (unknown) {
    throw new Failure(`there is no table '${unknown}'; there are ${tables().join(', ')}.`);
  }
  const isPart = named.length > 0 || options.indexOf('--only') >= 0;
  if (isDocumented && isPart) {
    throw new Failure(
      '--document puts all figures into the page; it goes with no table, no --only.'
    );
  }
  return { options, named: named.length > 0 ? named : tables(), isDocumented };
}

/** Runs one table; answers the rows that it writes, if it does. */
function runTable(name, options, json) {
  console.log(`\n# ${name}`);
  const env = Object.assign({}, process.env, {
    QUIRAVENT_DISPLAY: 'headless',
    QUIRAVENT_VIDEO_MEMORY: '1024 MiB'
  });
  // The processor's time is that of one thread, which therefore has to do everything itself.
  if (options.indexOf('--cpu-time') >= 0) env.QUIRAVENT_DRAWING_THREADS = '1';
  const words = ['--expose-gc', path.join(folder, name), '--json', json].concat(options);
  mustRun(process.execPath, words, { env });
  return fs.existsSync(json) ? JSON.parse(fs.readFileSync(json, 'utf8')) : [];
}

main((words) => {
  const { options, named, isDocumented } = readWords(words);
  setup(['build', 'bench']);
  build('release');
  require('../bench/lib/peers').installPeers();
  const work = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-bench-'));
  try {
    const rows = named.map((name) => runTable(name, options, path.join(work, `${name}.json`)));
    const all = {
      machine: os.cpus()[0].model,
      processors: os.cpus().length,
      clock: options.indexOf('--cpu-time') >= 0 ? "the processor's time" : 'the time that passes',
      rows: [].concat(...rows)
    };
    fs.writeFileSync(path.join(root, 'build', 'bench.json'), JSON.stringify(all, null, 1) + '\n');
    if (isDocumented) require('../bench/lib/document').writeDocument(all);
  } finally {
    mustRun('rm', ['-rf', work]);
  }
});
