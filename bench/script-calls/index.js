'use strict';

// What a script call costs: a canvas call over a porting layer that does nothing, beside callbacks
// that only read the same values: a bare one of the engine, and one of the stable interface.

const path = require('path');
const { spawnSync } = require('child_process');
const { contest, ratio, rowsOf } = require('../lib/contest');
const { printRow, readOptions, writeRows } = require('../lib/table');

const build = process.env.QUIRAVENT_BUILD || path.join(__dirname, '..', '..', 'build', 'release');
const layer = path.join(build, 'bench');

const CALLS = 10000;
const TEXT = 'The quick brown fox';
const RECT = { x: 10, y: 20, w: 30, h: 40 };
const COLOR = { x: 1, y: 2, w: 3, h: 4, r: 1, g: 2, b: 3, a: 255 };

/** name, the most times a bare callback, our call, the callback's */
function calls(canvas) {
  return [
    [
      'fillRect(x, y, w, h)',
      1.3,
      (i) => canvas.fillRect(i, 20, 30, 40),
      (bare, i) => bare.fourNumbers(i, 20, 30, 40)
    ],
    [
      'fillRect({x, y, w, h})',
      1.2,
      () => canvas.fillRect(RECT),
      (bare) => bare.fourProperties(RECT)
    ],
    [
      'setColor({r, g, b, a})',
      1.2,
      () => canvas.setColor(COLOR),
      (bare) => bare.fourProperties(COLOR)
    ],
    [
      "setColor('#...')",
      undefined,
      (i) => canvas.setColor(i & 1 ? '#102030' : '#302010'),
      (bare) => bare.text('#102030')
    ],
    [
      'drawText(text, x, y)',
      undefined,
      (i) => canvas.drawText(TEXT, i, 20),
      (bare, i) => bare.textAndPlace(TEXT, i, 20)
    ],
    [
      'measureText(text)',
      undefined,
      () => canvas.measureText(TEXT),
      (bare) => bare.textAndTwoResults(TEXT)
    ],
    ['getClip()', undefined, () => canvas.getClip(), (bare) => bare.fourResults()],
    ['isInvalid()', undefined, () => canvas.isInvalid(), (bare) => bare.answer()]
  ];
}

/** A frame is CALLS calls; a loop of its own for each, so that none sees another's types. */
function contestant(name, call, target) {
  const loop = new Function(
    'call',
    'target',
    'count',
    'for (let i = 0; i < count; ++i) target === null ? call(i) : call(target, i);'
  );
  return { name, frame: () => loop(call, target, CALLS) };
}

const WIDTHS = [24, 9, 8, 9, 6, 7, 6];
const nanoseconds = (result) => ((result.median * 1e6) / CALLS).toFixed(1);

async function measure([name, aim, own, bare], addons, options) {
  const results = await contest(
    [
      contestant('quiravent', own, null),
      contestant('engine callback', bare, addons.engine),
      contestant('Node-API callback', bare, addons.nodeApi)
    ],
    options
  );
  const ratios = results.slice(1).map((result) => ratio(results[0], result));
  printRow(
    [
      name,
      nanoseconds(results[0]),
      nanoseconds(results[1]),
      nanoseconds(results[2]),
      ratios[0].toFixed(2),
      aim || '',
      ratios[1].toFixed(2)
    ],
    WIDTHS
  );
  return rowsOf('script-calls', name, results, CALLS);
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  const { graphicServices } = require('../..');
  const load = (name) => new (require(path.join(layer, name)).Bare)();
  const addons = { engine: load('bare_callbacks.node'), nodeApi: load('node_api_callbacks.node') };
  if (options.cpuTime) options.clock = require(path.join(layer, 'memory_limit.node')).threadTime;
  const rows = [];
  printRow(['ns per call', 'ours', 'engine', 'Node-API', ': eng.', 'aim', ': N.-A.'], WIDTHS);
  for (const call of calls(graphicServices.getTargetCanvas())) {
    if (options.only && call[0].indexOf(options.only) < 0) continue;
    rows.push(...(await measure(call, addons, options)));
  }
  writeRows(options, rows);
}

if (process.env.LD_LIBRARY_PATH === layer) {
  main();
} else {
  // The loader reads the library path when the process starts.
  const env = Object.assign({}, process.env, { LD_LIBRARY_PATH: layer });
  const words = [__filename].concat(process.argv.slice(2));
  const child = spawnSync(process.execPath, words, { env, stdio: 'inherit' });
  process.exit(child.status === null ? 1 : child.status);
}
