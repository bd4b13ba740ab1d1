'use strict';

// What a method costs from script, drawing as little as possible, beside the peers' method of the
// same meaning. Here the device does its part.

const path = require('path');
const { contest, ratio, rowsOf } = require('../lib/contest');
const { printRow, readOptions, writeRows } = require('../lib/table');
const { openCanvases, openNapi, openOurs } = require('../graphics/contestants');

const build = process.env.QUIRAVENT_BUILD || path.join(__dirname, '..', '..', 'build', 'release');
const CALLS = 2000;
const TEXT = 'The quick brown fox';
const COLORS = ['#102030', '#302010'];

/** name, ours, the peers' */
const METHODS = [
  [
    'fillRect',
    (canvas, i) => canvas.fillRect(i & 511, 20, 1, 1),
    (context, i) => context.fillRect(i & 511, 20, 1, 1)
  ],
  [
    'clearRect',
    (canvas, i) => canvas.clearRect(i & 511, 20, 1, 1),
    (context, i) => context.clearRect(i & 511, 20, 1, 1)
  ],
  [
    'setColor, fillStyle',
    (canvas, i) => canvas.setColor(COLORS[i & 1]),
    (context, i) => (context.fillStyle = COLORS[i & 1])
  ],
  [
    'compose, drawImage',
    (canvas, i) => canvas.compose(canvas.other, i & 511, 20),
    (context, i) => context.drawImage(context.other, i & 511, 20)
  ],
  [
    'drawText, fillText',
    (canvas, i) => canvas.drawText('a', i & 511, 20),
    (context, i) => context.fillText('a', i & 511, 20)
  ],
  ['measureText', (canvas) => canvas.measureText(TEXT), (context) => context.measureText(TEXT)],
  [
    'setOpacity, globalAlpha',
    (canvas, i) => canvas.setOpacity(i & 1 ? 1 : 0.5),
    (context, i) => (context.globalAlpha = i & 1 ? 1 : 0.5)
  ]
];

function repeated(call, target) {
  return (done) => {
    for (let i = 0; i < CALLS; ++i) call(target, i);
    if (done) done(target);
  };
}

function openTargets(sides) {
  const ours = sides.ours.newCanvas();
  ours.setFont(sides.ours.font);
  ours.other = sides.ours.services.createCanvas(1, 1);
  const contexts = sides.peers.map((peer) => {
    const context = peer.newContext();
    context.font = peer.fontName;
    context.other = peer.library.createCanvas(1, 1);
    return context;
  });
  return { ours, contexts };
}

const WIDTHS = [24, 8, 8, 8, 7, 8];
const nanoseconds = (result) => ((result.median * 1e6) / CALLS).toFixed(0);

async function measure([name, own, theirs], sides, options) {
  const targets = openTargets(sides);
  const ours = repeated(own, targets.ours);
  const contestants = [{ name: 'quiravent', frame: () => ours() }].concat(
    sides.peers.map((peer, index) => {
      const frame = repeated(theirs, targets.contexts[index]);
      return { name: peer.name, frame: () => frame(peer.settle) };
    })
  );
  const results = await contest(contestants, options);
  const ratios = results.slice(1).map((result) => ratio(result, results[0]).toFixed(2));
  printRow([name].concat(results.map(nanoseconds), ratios), WIDTHS);
  return rowsOf('methods', name, results, CALLS);
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  const ours = await openOurs();
  const sides = { ours, peers: [openNapi(), openCanvases()[1]] };
  if (options.cpuTime) {
    options.clock = require(path.join(build, 'bench', 'memory_limit.node')).threadTime;
  }
  const rows = [];
  printRow(['ns per call', 'ours', 'napi', 'canvas', ': napi', ': canvas'], WIDTHS);
  for (const method of METHODS) {
    if (options.only && method[0].indexOf(options.only) < 0) continue;
    rows.push(...(await measure(method, sides, options)));
  }
  writeRows(options, rows);
}

main();
