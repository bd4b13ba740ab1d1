'use strict';

const test = require('tape');
const quiravent = require('./support/module');
const recorder = require('./support/recorder');
const { newCanvas, newFont } = require('./support/graphics');
const { row, rect } = require('./support/rows');

const { canvas, handle } = newCanvas(40, 30);
const other = newCanvas(10, 20);

/** Calls a method with arguments; gives the calls that reached the porting layer. */
function callsOf(method, args) {
  recorder.clear();
  const result = canvas[method].apply(canvas, args);
  const calls = recorder.calls();
  if (result !== undefined) throw new Error(`${method} gave ${result}`);
  if (!calls.every((call) => call.thread === 'script')) throw new Error('not the script thread');
  return calls.map((call) => [call.fn].concat(call.args));
}

const show = (args) => JSON.stringify(args, (key, value) => (value === undefined ? null : value));

/** Rows of [arguments, what the one call must have after the handle]. */
function checkRows(t, method, fn, rows) {
  rows.forEach((row) => {
    t.deepEqual(
      callsOf(method, row[0]),
      [[fn, handle].concat(row[1])],
      `${method} ${show(row[0])}`
    );
  });
}

const RECTANGLES = [
  [[1, 2, 3, 4], [rect(1, 2, 3, 4)]],
  [[rect(5, 6, 7, 8)], [rect(5, 6, 7, 8)]],
  [[{ h: 8, y: 6 }, 1, 2, 3, 4], [rect(0, 6, 0, 8)]],
  [[], [rect(0, 0, 0, 0)]],
  [[1, 2], [rect(1, 2, 0, 0)]],
  [[null, 2, 3, 4], [rect(0, 2, 3, 4)]],
  [[[], 2, 3, 4], [rect(0, 0, 0, 0)]],
  [[-1, -2147483648, 3.9, '4'], [rect(4294967295, 2147483648, 3, 4)]],
  [[NaN, Infinity, true, 'four'], [rect(0, 0, 1, 0)]],
  [[4294967295, 4294967296, 4294967301, -0.5], [rect(4294967295, 0, 5, 0)]],
  [[{ x: '1', y: -1, w: {}, h: null }], [rect(1, 4294967295, 0, 0)]]
];

['fillRect', 'clearRect', 'drawRect'].forEach((method) => {
  const fn = `pl_gfx_Canvas_${method[0].toUpperCase()}${method.slice(1)}`;
  test(`${method} takes an object or four numbers`, (t) => {
    checkRows(t, method, fn, RECTANGLES);
    t.end();
  });
});

test('drawLine takes an object or four numbers', (t) => {
  checkRows(t, 'drawLine', 'pl_gfx_Canvas_DrawLine', [
    row([1, 2, 3, 4], [1, 2, 3, 4]),
    row([{ x1: 1, y1: 2, x2: 3, y2: 4 }, 9, 9, 9], [1, 2, 3, 4]),
    row([{ y2: 4 }], [0, 0, 0, 4]),
    row([], [0, 0, 0, 0]),
    row([-1, '2', 3.5, null], [4294967295, 2, 3, 0])
  ]);
  t.end();
});

['Rotation', 'Opacity'].forEach((name) => {
  test(`set${name} passes a double on as it is`, (t) => {
    checkRows(t, `set${name}`, `pl_gfx_Canvas_Set${name}`, [
      [[0.25], [0.25]],
      [[-370.5], [-370.5]],
      [['1.5'], [1.5]],
      [[null], [0]],
      [[true], [1]],
      [[], [NaN]],
      [['much'], [NaN]],
      [[Infinity], [Infinity]]
    ]);
    t.end();
  });
});

test('flush takes the whole canvas or a rectangle', (t) => {
  checkRows(t, 'flush', 'pl_gfx_Canvas_Flush', [
    [[], [null]],
    [[undefined], [null]],
    [[null], [null]],
    [[rect(1, 2, 3, 4)], [rect(1, 2, 3, 4)]],
    [[{ w: 5 }], [rect(0, 0, 5, 0)]],
    [[7, 8, 9, 10], [rect(0, 0, 0, 0)]],
    [['all'], [rect(0, 0, 0, 0)]]
  ]);
  t.end();
});

test('drawEllipse takes an object or seven values', (t) => {
  const whole = {
    mode: 'outline',
    xc: 1,
    yc: 2,
    radiusx: 3,
    radiusy: 4,
    ang_start: 0.5,
    ang_end: 9
  };
  checkRows(t, 'drawEllipse', 'pl_gfx_Canvas_DrawEllipse', [
    row([whole, 'fill', 7, 7], [1, 1, 2, 3, 4, 0.5, 9]),
    row(['fill', 1, 2, 3, 4, 0.5, 9], [0, 1, 2, 3, 4, 0.5, 9]),
    row(['outline', -1, '2', 3.9, null, '45', undefined], [1, 4294967295, 2, 3, 0, 45, NaN]),
    row(['OUTLINE', 1, 2, 3, 4, 0, 0], [0, 1, 2, 3, 4, 0, 0]),
    row([{}], [0, 0, 0, 0, 0, NaN, NaN]),
    row([], [0, 0, 0, 0, 0, NaN, NaN]),
    row([{ mode: { toString: () => 'outline' } }], [1, 0, 0, 0, 0, NaN, NaN])
  ]);
  t.end();
});

test('setPorterDuff sends the code of the exact name, each time', (t) => {
  const names = [
    'SRC_OVER',
    'SRC_ATOP',
    'SRC_IN',
    'SRC_OUT',
    'DST_OVER',
    'DST_ATOP',
    'DST_IN',
    'DST_OUT',
    'ADD',
    'XOR',
    'SRC'
  ];
  const fn = 'pl_gfx_Canvas_SetPorterDuff';
  names.forEach((name, index) => checkRows(t, 'setPorterDuff', fn, [[[name], [index + 1]]]));
  const unknown = ['', 'src_over', 'SRC_OVER ', 'DST', 'CLEAR', 1, null, undefined, {}];
  unknown.forEach((name) => checkRows(t, 'setPorterDuff', fn, [[[name], [0]]]));
  checkRows(t, 'setPorterDuff', fn, [
    [[], [0]],
    [['ADD'], [9]],
    [['ADD'], [9]],
    [[{ toString: () => 'XOR' }], [10]]
  ]);
  t.end();
});

test('compose draws the whole source or a part of it', (t) => {
  const source = other.canvas;
  checkRows(t, 'compose', 'pl_gfx_Canvas_Compose', [
    row([source, 1, 2], [other.handle, 1, 2, null]),
    row([source], [other.handle, 0, 0, null]),
    row([source, -1, '2', undefined], [other.handle, 4294967295, 2, null]),
    row([source, 1, 2, rect(3, 4, 5, 6)], [other.handle, 1, 2, rect(3, 4, 5, 6)]),
    row([source, 1, 2, {}], [other.handle, 1, 2, rect(0, 0, 0, 0)]),
    row([source, 1, 2, 7], [other.handle, 1, 2, rect(0, 0, 0, 0)]),
    row([canvas, 1, 2], [handle, 1, 2, null])
  ]);
  t.end();
});

test('composeScaled takes the sizes of both canvases for rectangles not given', (t) => {
  const source = other.canvas;
  const to = rect(1, 2, 3, 4);
  const from = rect(5, 6, 7, 8);
  const here = rect(0, 0, 40, 30);
  const there = rect(0, 0, 10, 20);
  const rows = [
    [[source], here, there, [handle, other.handle]],
    [[source, undefined, undefined], here, there, [handle, other.handle]],
    [[source, to], to, there, [other.handle]],
    [[source, undefined, from], here, from, [handle]],
    [[source, to, from], to, from, []],
    [[source, {}, 7], rect(0, 0, 0, 0), rect(0, 0, 0, 0), []]
  ];
  rows.forEach((row) => {
    const asked = row[3].map((each) => ['pl_gfx_Canvas_GetSize', each, 'out', 'out']);
    const drawn = ['pl_gfx_Canvas_ComposeScaled', handle, other.handle, row[1], row[2]];
    t.deepEqual(callsOf('composeScaled', row[0]), asked.concat([drawn]));
  });
  t.end();
});

test('compose and composeScaled demand a source', (t) => {
  const texts = {
    compose: 'compose() error. canvasWrapperSource is invalid.',
    composeScaled: 'composeScaled() error. canvasWrapperSource is not valid.',
    setFont: 'setFont() error. I believe that your font was not loaded.'
  };
  recorder.clear();
  Object.keys(texts).forEach((method) => {
    [[], [undefined], [null], [null, 1, 2]].forEach((args) => {
      let error = null;
      try {
        canvas[method].apply(canvas, args);
      } catch (thrown) {
        error = thrown;
      }
      t.ok(error instanceof TypeError, method);
      t.equal(error.message, texts[method]);
    });
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('a released source draws nothing', (t) => {
  const source = newCanvas().canvas;
  source.release();
  t.deepEqual(callsOf('compose', [source, 1, 2]), []);
  t.deepEqual(callsOf('compose', [source, 1, 2, rect(1, 2, 3, 4)]), []);
  t.deepEqual(callsOf('composeScaled', [source, rect(1, 2, 3, 4), rect(1, 2, 3, 4)]), []);
  t.end();
});

test('a wrapped object of another class goes undetected, and nothing comes of it', (t) => {
  return newFont().then((font) => {
    t.deepEqual(callsOf('setFont', [other.canvas]), []);
    t.deepEqual(callsOf('compose', [font, 1, 2]), []);
  });
});

test('text is drawn as the word of whatever is given', (t) => {
  return newFont().then((font) => {
    canvas.setFont(font);
    checkRows(t, 'drawText', 'pl_gfx_Canvas_DrawText', [
      row(['text', 1, 2], [1, 2, 'text']),
      row([12.5], [0, 0, '12.5']),
      row([], [0, 0, 'undefined']),
      row([null, '3', -1], [3, 4294967295, 'null']),
      row([true, 1.9], [1, 0, 'true']),
      row([[1, 2]], [0, 0, '1,2']),
      row(['não 日本 😀'], [0, 0, 'não 日本 😀']),
      row(['cut\0off'], [0, 0, 'cut'])
    ]);
    t.deepEqual(callsOf('drawText', ['', 1, 2]), [], 'an empty text is not passed on');
  });
});

test('a text that comes again is read as the first time, also when its string is gone', (t) => {
  const texts = Array.from({ length: 900 }, (_, i) => `é日 ${i}`);
  const drawn = (list) => list.map((text) => callsOf('drawText', [text, 0, 0])[0][4]);
  return newFont().then((font) => {
    canvas.setFont(font);
    for (let round = 0; round < 3; round += 1) {
      t.deepEqual(drawn(texts), texts);
      const others = texts.map((text) => `${text} ${round}`);
      t.deepEqual(drawn(others), others);
      global.gc();
    }
    const long = 'long '.repeat(100);
    t.deepEqual(drawn([long, 'a', long, 7, 'a']), [long, 'a', long, '7', 'a']);
  });
});

/** An object that notes which of its properties are read. */
function noting(names, log) {
  const object = {};
  names.forEach((name) => {
    Object.defineProperty(object, name, {
      get: () => {
        log.push(name);
        return 0;
      }
    });
  });
  return object;
}

test('named parts are each read once, in their order', (t) => {
  const fourths = ['x', 'y', 'w', 'h'];
  const rows = [
    ['fillRect', (object) => [object], fourths],
    ['setClip', (object) => [object], fourths],
    ['flush', (object) => [object], fourths],
    ['compose', (object) => [other.canvas, 0, 0, object], fourths],
    ['composeScaled', (object) => [other.canvas, object, object], fourths.concat(fourths)],
    ['drawLine', (object) => [object], ['x1', 'y1', 'x2', 'y2']],
    ['setColor', (object) => [object], ['r', 'g', 'b', 'a']],
    [
      'drawEllipse',
      (object) => [object],
      ['mode', 'xc', 'yc', 'radiusx', 'radiusy', 'ang_start', 'ang_end']
    ]
  ];
  rows.forEach((row) => {
    const log = [];
    canvas[row[0]].apply(canvas, row[1](noting(new Set(row[2]), log)));
    t.deepEqual(log, row[2], row[0]);
  });
  t.end();
});

test('what a conversion throws reaches the script after the call was made with 0 in its place', (t) => {
  const fails = () => {
    throw new RangeError('mine');
  };
  const accessor = Object.defineProperty({ y: 2, w: 3, h: 4 }, 'x', { get: fails });
  const drawings = [
    ['an accessor', () => canvas.fillRect(accessor), { x: 0, y: 2, w: 3, h: 4 }],
    ['a conversion', () => canvas.fillRect(1, { valueOf: fails }, 3), { x: 1, y: 0, w: 3, h: 0 }],
    [
      'a property that converts',
      () => canvas.fillRect({ x: 1, y: { valueOf: fails }, w: undefined, h: '4' }),
      { x: 1, y: 0, w: 0, h: 4 }
    ]
  ];
  drawings.forEach((drawing) => {
    recorder.clear();
    t.throws(drawing[1], /^RangeError: mine$/, drawing[0]);
    t.deepEqual(
      recorder.argsOf('pl_gfx_Canvas_FillRect').map((args) => args[1]),
      [drawing[2]]
    );
  });
  t.end();
});

test('a call from within a conversion doesn’t take the exception of the one around it', (t) => {
  const seen = [];
  const fails = (text) => () => {
    throw new RangeError(text);
  };
  const calls = () => {
    t.throws(() => canvas.fillRect(1, { valueOf: fails('inner') }), /^RangeError: inner$/);
    seen.push(quiravent.tunerServices.getPlayer(1, 2, 3) instanceof quiravent.dtvplayer);
    return 7;
  };
  recorder.clear();
  const draw = () => canvas.drawRect(1, { valueOf: fails('outer') }, { valueOf: calls });
  t.throws(draw, /^RangeError: outer$/);
  t.deepEqual(seen, [true]);
  t.deepEqual(recorder.argsOf('pl_gfx_Canvas_DrawRect'), [[handle, rect(1, 0, 7, 0)]]);
  t.end();
});
