'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const { newCanvas, newFont } = require('./support/graphics');
const { row, rect } = require('./support/rows');

const SIZE = { w: 7, h: 9 };
const NO_SIZE = { w: 0, h: 0 };
const NO_TEXT = { width: 0, height: 0 };
const NO_CLIP = rect(0, 0, 0, 0);
const NO_COLOR = { r: 0, g: 0, b: 0, a: 0 };

test('a clip reaches the porting layer when it changes', (t) => {
  const { canvas, handle } = newCanvas();
  const ones = 0xffffffff;
  const rows = [
    [[ones, ones, ones, ones], null, 'the start value counts as set'],
    [[-1, -1, -1, -1], null, 'and so does its like'],
    [[1, 2, 3, 4], rect(1, 2, 3, 4)],
    [[1, 2, 3, 4], null, 'set already'],
    [[rect(1, 2, 3, 4)], null, 'set already, in the other form'],
    [[1, 2, 3, 5], rect(1, 2, 3, 5)],
    [[1, 2, 4, 5], rect(1, 2, 4, 5)],
    [[1, 3, 4, 5], rect(1, 3, 4, 5)],
    [[2, 3, 4, 5], rect(2, 3, 4, 5)],
    [[], rect(0, 0, 1280, 720), 'nothing: the size of the target, not of this canvas'],
    [[null], null, 'the same again'],
    [[undefined, 1, 2, 3], null],
    [[0, 0, 1280, 720], null],
    [[5, 6], rect(5, 6, 0, 0)],
    [[null, 1, 2, 3], rect(0, 0, 1280, 720)],
    [[false, 1, 2, 3], rect(0, 1, 2, 3)]
  ];
  rows.forEach((row) => {
    recorder.clear();
    t.equal(canvas.setClip.apply(canvas, row[0]), undefined);
    const expected = row[1] ? [['pl_gfx_Canvas_SetClip', handle, row[1]]] : [];
    t.deepEqual(recorder.sequence(), expected, row[2] || JSON.stringify(row[0]));
  });
  t.end();
});

test('a clip that was refused is tried again', (t) => {
  const { canvas } = newCanvas();
  canvas.setClip(1, 1, 1, 1);
  recorder.clear();
  recorder.once('pl_gfx_Canvas_SetClip', { status: 2 });
  canvas.setClip(2, 2, 2, 2);
  canvas.setClip(1, 1, 1, 1);
  t.equal(recorder.calls().length, 1, 'the one from before still counts as set');
  canvas.setClip(2, 2, 2, 2);
  canvas.setClip(2, 2, 2, 2);
  t.equal(recorder.calls().length, 2);
  t.end();
});

test('a font is bound once, and stays when another is refused', (t) => {
  const { canvas, handle } = newCanvas();
  return Promise.all([newFont(), newFont()]).then((fonts) => {
    recorder.clear();
    t.equal(canvas.setFont(fonts[0]), undefined);
    const first = recorder.argsOf('pl_gfx_Canvas_SetFont')[0][1];
    canvas.setFont(fonts[0]);
    t.deepEqual(recorder.sequence(), [['pl_gfx_Canvas_SetFont', handle, first]]);

    recorder.once('pl_gfx_Canvas_SetFont', { status: 1 });
    canvas.setFont(fonts[1]);
    t.equal(recorder.calls().length, 2);
    canvas.setFont(fonts[0]);
    t.equal(recorder.calls().length, 2, 'the first is still the bound one');
    canvas.drawText('a', 1, 2);
    t.equal(recorder.calls('pl_gfx_Canvas_DrawText').length, 1);

    canvas.setFont(fonts[1]);
    canvas.setFont(fonts[0]);
    t.equal(recorder.calls('pl_gfx_Canvas_SetFont').length, 4);
  });
});

test('without a font no text call does anything', (t) => {
  const { canvas } = newCanvas();
  recorder.once('pl_gfx_Canvas_SetFont', { status: 1 });
  return newFont().then((font) => {
    canvas.setFont(font);
    recorder.clear();
    canvas.drawText('text', 1, 2);
    t.deepEqual(canvas.measureText('text'), NO_TEXT);
    canvas.setTextAlign('right', 'bottom');
    t.deepEqual(recorder.calls(), []);
    canvas.setFont(font);
    recorder.clear();
    canvas.setTextAlign('right', 'bottom');
    t.equal(recorder.calls().length, 1, 'the alignment from before was not remembered');
  });
});

test('an alignment reaches the porting layer when one of its words changes', (t) => {
  const { canvas, handle } = newCanvas();
  const rows = [
    row([], null, 'two empty words are the start'),
    row([5, {}], null, 'what is no text leaves the empty word'),
    row(['left', 'baseline'], [0, 0]),
    row(['left', 'baseline'], null),
    row(['center', 'baseline'], [1, 0]),
    row(['right', 'top'], [2, 1]),
    row(['right', 'middle'], [2, 2]),
    row(['right', 'bottom'], [2, 3]),
    row(['right'], [2, 0]),
    row(['right', ''], null),
    row([undefined, 'top'], [0, 1]),
    row([null, 'top'], null),
    row(['Right', 'Top'], [0, 0], 'words are exact'),
    row(['Right', 'Top'], null, 'an unknown word is remembered as given'),
    row(['', ''], [0, 0], 'the words are compared, not their codes'),
    row(['middle', 'center'], [0, 0])
  ];
  return newFont().then((font) => {
    canvas.setFont(font);
    rows.forEach((row) => {
      recorder.clear();
      t.equal(canvas.setTextAlign.apply(canvas, row[0]), undefined);
      const expected = row[1] ? [['pl_gfx_Canvas_SetTextAlign', handle].concat(row[1])] : [];
      t.deepEqual(recorder.sequence(), expected, row[2] || JSON.stringify(row[0]));
    });
    recorder.clear();
    recorder.once('pl_gfx_Canvas_SetTextAlign', { status: 1 });
    canvas.setTextAlign('left', 'top');
    canvas.setTextAlign('left', 'top');
    canvas.setTextAlign('left', 'top');
    t.equal(recorder.calls().length, 2, 'a refused one is tried again');
  });
});

// [method, arguments, function, prepared outputs, result, result when it is refused]
const QUERIES = [
  ['getSize', [], 'GetSize', SIZE, SIZE, NO_SIZE],
  ['getSize', [], 'GetSize', { w: 4294967295, h: -2 }, { w: 4294967295, h: 4294967294 }, NO_SIZE],
  ['getClip', [], 'GetClip', rect(1, 2, 3, -1), rect(1, 2, 3, 4294967295), NO_CLIP],
  [
    'getColor',
    [],
    'GetColor',
    { r: 1, g: 2, b: 254, a: 255 },
    { r: 1, g: 2, b: 254, a: 255 },
    NO_COLOR
  ],
  ['measureText', ['ab'], 'MeasureText', { w: 5, h: -1 }, { width: 5, height: 4294967295 }, NO_TEXT]
];

test('a query gives a plain object, of zeros when the porting layer refuses', (t) => {
  const { canvas, handle } = newCanvas();
  return newFont().then((font) => {
    canvas.setFont(font);
    QUERIES.forEach((row) => {
      const fn = `pl_gfx_Canvas_${row[2]}`;
      [
        [0, row[4]],
        [3, row[5]]
      ].forEach((outcome) => {
        recorder.clear();
        recorder.once(fn, { status: outcome[0], outputs: row[3] });
        const result = canvas[row[0]].apply(canvas, row[1]);
        t.deepEqual(result, outcome[1], row[0]);
        t.deepEqual(Object.keys(result), Object.keys(row[4]), 'in this order');
        t.equal(Object.getPrototypeOf(result), Object.prototype);
        const out = recorder.calls().map((call) => [call.fn, call.args[0], call.thread]);
        t.deepEqual(out, [[fn, handle, 'script']]);
      });
    });
  });
});

test("a result's properties are set as a script would set them", (t) => {
  const { canvas } = newCanvas();
  const seen = [];
  Object.defineProperty(Object.prototype, 'y', { configurable: true, set: (y) => seen.push(y) });
  const clip = canvas.getClip();
  Object.defineProperty(Object.prototype, 'y', { set: () => canvas.gone() });
  t.throws(() => canvas.getClip(), TypeError);
  delete Object.prototype.y;
  t.deepEqual(Object.keys(clip), ['x', 'w', 'h']);
  t.deepEqual(seen, [0]);
  t.end();
});

test('outputs that the porting layer leaves alone read as zeros', (t) => {
  const { canvas } = newCanvas();
  return newFont().then((font) => {
    canvas.setFont(font);
    QUERIES.forEach((row) => {
      const outputs = {};
      Object.keys(row[3]).forEach((name) => (outputs[name] = null));
      recorder.once(`pl_gfx_Canvas_${row[2]}`, { status: 0, outputs });
      t.deepEqual(canvas[row[0]].apply(canvas, row[1]), row[5], row[0]);
    });
  });
});

test('colour and clip are always asked of the porting layer', (t) => {
  const { canvas } = newCanvas(8, 9);
  canvas.setColor({ r: 1, g: 2, b: 3, a: 4 });
  canvas.setClip(1, 2, 3, 4);
  t.deepEqual(canvas.getColor(), { r: 1, g: 2, b: 3, a: 4 });
  t.deepEqual(canvas.getClip(), rect(1, 2, 3, 4));
  recorder.once('pl_gfx_Canvas_GetColor', { outputs: { r: 9, g: 9, b: 9, a: 9 } });
  t.deepEqual(canvas.getColor(), { r: 9, g: 9, b: 9, a: 9 });
  canvas.setClip();
  recorder.once('pl_gfx_Canvas_GetClip', { outputs: rect(0, 0, 8, 9) });
  t.deepEqual(canvas.getClip(), rect(0, 0, 8, 9));
  t.end();
});

test('a text is measured as the word of whatever is given', (t) => {
  const { canvas } = newCanvas();
  return newFont().then((font) => {
    canvas.setFont(font);
    recorder.clear();
    [[], [null], [1.5], ['é']].forEach((args) => canvas.measureText.apply(canvas, args));
    const texts = recorder.argsOf('pl_gfx_Canvas_MeasureText').map((args) => args[1]);
    t.deepEqual(texts, ['undefined', 'null', '1.5', 'é']);
    recorder.clear();
    t.deepEqual(canvas.measureText(''), NO_TEXT);
    t.deepEqual(recorder.calls(), [], 'an empty text is not passed on');
  });
});

test('release gives the handle back once and leaves a harmless object', (t) => {
  const { canvas, handle } = newCanvas();
  const other = newCanvas().canvas;
  return newFont().then((font) => {
    canvas.setFont(font);
    t.equal(canvas.isInvalid(), false);
    recorder.clear();
    t.equal(canvas.release(), undefined);
    t.deepEqual(recorder.sequence(), [['pl_gfx_ReleaseCanvas', handle]]);
    recorder.clear();

    t.equal(canvas.release(), undefined);
    t.equal(canvas.isInvalid(), true);
    const drawing = [
      () => canvas.setColor('red'),
      () => canvas.setColor({ r: 1 }),
      () => canvas.setColor('#zzzzzz'),
      () => canvas.fillRect(1, 2, 3, 4),
      () => canvas.clearRect(1, 2, 3, 4),
      () => canvas.drawRect(1, 2, 3, 4),
      () => canvas.drawLine(1, 2, 3, 4),
      () => canvas.setClip(1, 2, 3, 4),
      () => canvas.setRotation(1),
      () => canvas.setOpacity(1),
      () => canvas.setFont(font),
      () => canvas.drawText('a', 1, 2),
      () => canvas.setTextAlign('right', 'top'),
      () => canvas.compose(other, 1, 2),
      () => canvas.compose(other, 1, 2, {}),
      () => canvas.composeScaled(other, {}, {}),
      () => canvas.flush(),
      () => canvas.flush({}),
      () => canvas.drawEllipse('fill', 1, 2, 3, 4, 5, 6),
      () => canvas.setPorterDuff('ADD')
    ];
    drawing.forEach((draw) => t.equal(draw(), undefined, String(draw)));
    t.deepEqual(canvas.getSize(), NO_SIZE);
    t.deepEqual(canvas.getColor(), NO_COLOR);
    t.deepEqual(canvas.getClip(), NO_CLIP);
    t.deepEqual(canvas.measureText('a'), NO_TEXT);
    t.deepEqual(recorder.calls(), []);
  });
});
