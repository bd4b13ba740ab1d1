'use strict';

// Drawing, driven from script, against the canvases that npm offers, and against moving the same
// bytes. See docs/performance.md for the method.

const path = require('path');
const { contest, rowsOf } = require('../lib/contest');
const { printRow, readOptions, writeRows } = require('../lib/table');
const { openCanvases, openNapi, openOurs } = require('./contestants');

const build = process.env.QUIRAVENT_BUILD || path.join(__dirname, '..', '..', 'build', 'release');

const scenes = [].concat(
  require('./scenes/fills'),
  require('./scenes/pictures'),
  require('./scenes/text'),
  require('./scenes/shapes'),
  require('./scenes/home'),
  require('./scenes/decoding')
);

const WIDTHS = [22, 8, 7, 8, 8, 8, 8, 8, 6, 7, 7];
const HEAD = [
  'ms per frame',
  'ours',
  'spread',
  'napi/8',
  'napi/1',
  'canvas',
  'best',
  ': napi/8',
  'aim',
  ': best',
  'limit'
];

/** Milliseconds: of time, or of the processor's for what the scene's threads do. */
function clockFor(scene, options, memory) {
  if (!options.cpuTime) return undefined;
  if (!scene.drawsNothing) return memory.threadTime;
  return () => (process.cpuUsage().user + process.cpuUsage().system) / 1000;
}

/** The peers' frames, with the drawing that is put off done after every `group`. */
function peerContestant(name, peer, played, scene, group) {
  const settle = () => scene.drawsNothing || peer.settle(played.context);
  if (scene.single || scene.drawsNothing) {
    return {
      name,
      prepare: played.prepare,
      frame: played.frame,
      finish: settle,
      single: scene.single
    };
  }
  let since = 0;
  const frame = (i) => {
    const pending = played.frame(i);
    if (++since % group === 0) settle();
    return pending;
  };
  return { name, frame, group };
}

async function contestantsOf(scene, sides) {
  const ours = await scene.ours(sides.ours);
  const all = [
    { name: 'quiravent', prepare: ours.prepare, frame: ours.frame, single: scene.single }
  ];
  const napi = await scene.peer(sides.napi);
  all.push(peerContestant('napi/8', sides.napi, napi, scene, 8));
  if (!scene.single && !scene.drawsNothing) {
    const another = await scene.peer(sides.napi);
    all.push(peerContestant('napi/1', sides.napi, another, scene, 1));
  }
  for (const peer of scene.without ? [] : sides.canvases) {
    all.push(peerContestant(peer.name, peer, await scene.peer(peer), scene, 1));
  }
  if (scene.limit) all.push({ name: 'limit', frame: () => scene.limit(sides.memory) });
  return all;
}

function rowsWithAim(scene, results) {
  const rows = rowsOf('graphics', scene.name, results, 1);
  return rows.map((row) =>
    row.contestant === 'napi/8' ? Object.assign(row, { aim: scene.aim }) : row
  );
}

const figure = (value) => (value === undefined ? '–' : value.toFixed(value < 1 ? 3 : 2));

function print(rows) {
  const of = (name) => rows.find((row) => row.contestant === name) || {};
  const napi = of('napi/8');
  const cells = [
    figure(rows[0].median),
    `${Math.round(rows[0].spread * 100)} %`,
    ...['napi/8', 'napi/1', 'canvas', 'canvas best'].map((name) => figure(of(name).median)),
    figure(napi.ratio),
    napi.aim === undefined ? '' : String(napi.aim),
    figure(of('canvas best').ratio),
    figure(of('limit').ratio === undefined ? undefined : 1 / of('limit').ratio)
  ];
  printRow([rows[0].scene].concat(cells), WIDTHS);
}

/**
 * Our own side first: a shared library that canvas has loaded before, as any add-on does, binds to
 * functions that the runtime happens to export, and would be ours too.
 */
async function openSides() {
  const ours = await openOurs();
  const napi = openNapi();
  return {
    ours,
    napi,
    canvases: openCanvases(),
    memory: require(path.join(build, 'bench', 'memory_limit.node'))
  };
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  const sides = await openSides();
  const chosen = scenes.filter((scene) => !options.only || scene.name.includes(options.only));
  const rows = [];
  printRow(HEAD, WIDTHS);
  for (const scene of chosen) {
    const results = await contest(
      await contestantsOf(scene, sides),
      Object.assign({ clock: clockFor(scene, options, sides.memory) }, options)
    );
    const own = rowsWithAim(scene, results);
    rows.push(...own);
    print(own);
    if (global.gc) global.gc();
  }
  writeRows(options, rows);
}

if (require.main === module) main();

module.exports = { openSides, scenes };
