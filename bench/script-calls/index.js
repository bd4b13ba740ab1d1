'use strict';

// What a script call costs: a canvas call over a porting layer that does nothing, beside callbacks
// that only read the same values: a bare one of the engine, and one of the stable interface.

const { contest, ratio, rowsOf } = require('../lib/contest');
const { promised } = require('../lib/promised');
const { loadAddon, overEmptyLayer } = require('../lib/emptyLayer');
const { printRow, readOptions, writeRows } = require('../lib/table');

const CALLS = 10000;
const TEXT = 'The quick brown fox';
const RECT = { x: 10, y: 20, w: 30, h: 40 };
const COLOR = { x: 1, y: 2, w: 3, h: 4, r: 1, g: 2, b: 3, a: 255 };

/** name, the most times a bare callback, our call, the callback's */
function calls({ canvas, other, store, player }) {
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
      "setColor('red')",
      undefined,
      (i) => canvas.setColor(i & 1 ? 'red' : 'white'),
      (bare, i) => bare.text(i & 1 ? 'red' : 'white')
    ],
    [
      'compose(canvas, x, y)',
      undefined,
      (i) => canvas.compose(other, i, 20),
      (bare, i) => bare.objectAndPlace(bare, i, 20)
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
    ['isInvalid()', undefined, () => canvas.isInvalid(), (bare) => bare.answer()],
    ['player.getTime()', undefined, () => player.getTime(), (bare) => bare.threeResults()],
    ['persistent.get(key)', undefined, () => store.get('key'), (bare) => bare.textAndText('key')],
    [
      'persistent.set(key, value)',
      undefined,
      () => store.set('key', 'value'),
      (bare) => bare.twoTexts('key', 'value')
    ]
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

const WIDTHS = [27, 9, 8, 9, 6, 7, 6];
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

/** Objects of ours, whose methods are called. */
async function openTargets() {
  const { dataServices, graphicServices, mediaServices } = require('../..');
  const bounds = { x: 0, y: 0, w: 1, h: 1 };
  return {
    canvas: graphicServices.getTargetCanvas(),
    other: graphicServices.createCanvas(1, 1),
    store: dataServices.getPersistent('bench'),
    player: await promised((done) => mediaServices.getPlayer('', bounds, done))
  };
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  const load = (name) => new (loadAddon(name).Bare)();
  const addons = { engine: load('bare_callbacks'), nodeApi: load('node_api_callbacks') };
  if (options.cpuTime) options.clock = loadAddon('memory_limit').threadTime;
  const rows = [];
  printRow(['ns per call', 'ours', 'engine', 'Node-API', ': eng.', 'aim', ': N.-A.'], WIDTHS);
  for (const call of calls(await openTargets())) {
    if (options.only && call[0].indexOf(options.only) < 0) continue;
    rows.push(...(await measure(call, addons, options)));
  }
  writeRows(options, rows);
}

overEmptyLayer(__filename, main);
