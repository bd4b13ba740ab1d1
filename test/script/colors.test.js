'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const { newCanvas } = require('./support/graphics');

const rgba = (r, g, b, a) => ({ r, g, b, a });
const WHITE = rgba(255, 255, 255, 255);

/** The colours that reached the porting layer, each call setting one after the other. */
function colorsOf(canvas, arguments_) {
  recorder.clear();
  arguments_.forEach((argument) => canvas.setColor(argument));
  return recorder.argsOf('pl_gfx_Canvas_SetColor').map((args) => args[1]);
}

/** What a colour becomes on a new canvas; null when nothing reached the porting layer. */
function colorOf(argument) {
  const { canvas, handle } = newCanvas();
  recorder.clear();
  if (canvas.setColor(argument) !== undefined) throw new Error('setColor gave a result');
  const calls = recorder.sequence();
  if (calls.length === 0) return null;
  if (calls.length !== 1 || calls[0][1] !== handle) throw new Error(JSON.stringify(calls));
  return calls[0][2];
}

// The named colours of CSS Color Module Level 4, but that two of the keys have trailing blanks.
const NAMED = `
  aliceblue:f0f8ff, antiquewhite:faebd7, aqua:00ffff, aquamarine:7fffd4, azure:f0ffff,
  beige:f5f5dc, bisque:ffe4c4, black:000000, blanchedalmond:ffebcd, blue:0000ff,
  blueviolet:8a2be2, brown:a52a2a, burlywood:deb887, cadetblue:5f9ea0, chartreuse:7fff00,
  chocolate:d2691e, coral:ff7f50, cornflowerblue:6495ed, cornsilk:fff8dc, crimson:dc143c,
  cyan:00ffff, darkblue:00008b, darkcyan:008b8b, darkgoldenrod:b8860b, darkgray:a9a9a9,
  darkgreen:006400, darkgrey:a9a9a9, darkkhaki:bdb76b, darkmagenta:8b008b, darkolivegreen:556b2f,
  darkorange:ff8c00, darkorchid:9932cc, darkred:8b0000, darksalmon:e9967a, darkseagreen:8fbc8f,
  darkslateblue:483d8b, darkslategray:2f4f4f, darkslategrey:2f4f4f, darkturquoise:00ced1,
  darkviolet:9400d3, deeppink:ff1493, deepskyblue:00bfff, dimgray:696969, dimgrey:696969,
  dodgerblue:1e90ff, firebrick:b22222, floralwhite:fffaf0, forestgreen:228b22, fuchsia:ff00ff,
  gainsboro:dcdcdc, ghostwhite:f8f8ff, gold:ffd700, goldenrod:daa520, gray:808080, green:008000,
  greenyellow:adff2f, grey:808080, honeydew:f0fff0, hotpink:ff69b4, indianred :cd5c5c,
  indigo  :4b0082, ivory:fffff0, khaki:f0e68c, lavender:e6e6fa, lavenderblush:fff0f5,
  lawngreen:7cfc00, lemonchiffon:fffacd, lightblue:add8e6, lightcoral:f08080, lightcyan:e0ffff,
  lightgoldenrodyellow:fafad2, lightgray:d3d3d3, lightgreen:90ee90, lightgrey:d3d3d3,
  lightpink:ffb6c1, lightsalmon:ffa07a, lightseagreen:20b2aa, lightskyblue:87cefa,
  lightslategray:778899, lightslategrey:778899, lightsteelblue:b0c4de, lightyellow:ffffe0,
  lime:00ff00, limegreen:32cd32, linen:faf0e6, magenta:ff00ff, maroon:800000,
  mediumaquamarine:66cdaa, mediumblue:0000cd, mediumorchid:ba55d3, mediumpurple:9370db,
  mediumseagreen:3cb371, mediumslateblue:7b68ee, mediumspringgreen:00fa9a,
  mediumturquoise:48d1cc, mediumvioletred:c71585, midnightblue:191970, mintcream:f5fffa,
  mistyrose:ffe4e1, moccasin:ffe4b5, navajowhite:ffdead, navy:000080, oldlace:fdf5e6,
  olive:808000, olivedrab:6b8e23, orange:ffa500, orangered:ff4500, orchid:da70d6,
  palegoldenrod:eee8aa, palegreen:98fb98, paleturquoise:afeeee, palevioletred:db7093,
  papayawhip:ffefd5, peachpuff:ffdab9, peru:cd853f, pink:ffc0cb, plum:dda0dd, powderblue:b0e0e6,
  purple:800080, rebeccapurple:663399, red:ff0000, rosybrown:bc8f8f, royalblue:4169e1,
  saddlebrown:8b4513, salmon:fa8072, sandybrown:f4a460, seagreen:2e8b57, seashell:fff5ee,
  sienna:a0522d, silver:c0c0c0, skyblue:87ceeb, slateblue:6a5acd, slategray:708090,
  slategrey:708090, snow:fffafa, springgreen:00ff7f, steelblue:4682b4, tan:d2b48c, teal:008080,
  thistle:d8bfd8, tomato:ff6347, turquoise:40e0d0, violet:ee82ee, wheat:f5deb3, white:ffffff,
  whitesmoke:f5f5f5, yellow:ffff00, yellowgreen:9acd32
`;

test('every colour has its name, in any case of letters', (t) => {
  const entries = NAMED.trim().split(/,\s+/);
  t.equal(entries.length, 148);
  const wrong = entries.filter((entry) => {
    const name = entry.slice(0, -7);
    const value = parseInt(entry.slice(-6), 16);
    const expected = rgba(value >> 16, (value >> 8) & 255, value & 255, 255);
    return [name, name.toUpperCase()].some((text) => {
      return JSON.stringify(colorOf(text)) !== JSON.stringify(expected);
    });
  });
  t.deepEqual(wrong, []);
  t.end();
});

test('a text that names no colour is opaque white', (t) => {
  const texts = [
    'indigo',
    'indianred',
    'indigo ',
    'indianred  ',
    'red ',
    ' red',
    'transparent',
    'none',
    'vermillón',
    'rgb(1,2,3)',
    '#',
    '#a',
    '#ab',
    '#abcd',
    '#abcde',
    '#zzzzz',
    '#abcdefa',
    '#abcdef012',
    '#abé',
    'abcdef'
  ];
  texts.forEach((text) => t.deepEqual(colorOf(text), WHITE, JSON.stringify(text)));
  t.end();
});

// With the conversion of strtol: blanks and signs are taken, and the first other character ends it.
const HEXADECIMAL = {
  '#3af': rgba(0x33, 0xaa, 0xff, 255),
  '#33aaff': rgba(0x33, 0xaa, 0xff, 255),
  '#33AAFF': rgba(0x33, 0xaa, 0xff, 255),
  '#33aaff80': rgba(0x33, 0xaa, 0xff, 0x80),
  '#00000080': rgba(0, 0, 0, 128),
  '#000': rgba(0, 0, 0, 255),
  '#FFF': WHITE,
  '#-1-1-1': WHITE,
  '#-f+a 7': rgba(0xf1, 0x0a, 0x07, 255),
  '#7g0x12': rgba(0x07, 0, 0x12, 255),
  '#0X+f\t7-f': rgba(0, 0x0f, 0x07, 0xf1)
};

test('a colour’s text ends at its first NUL', (t) => {
  t.deepEqual(colorOf('red\0dish'), rgba(255, 0, 0, 255));
  t.end();
});

test('hexadecimal texts have one or two digits for each part', (t) => {
  Object.keys(HEXADECIMAL).forEach((text) => {
    t.deepEqual(colorOf(text), HEXADECIMAL[text], JSON.stringify(text));
  });
  t.end();
});

test('numbers are cut to their low eight bits', (t) => {
  const rows = [
    [rgba(1, 2, 3, 4), rgba(1, 2, 3, 4)],
    [rgba(300, 256, 257, -1), rgba(44, 0, 1, 255)],
    [{ r: 5 }, rgba(5, 0, 0, 0)],
    [{}, rgba(0, 0, 0, 0)],
    [[], rgba(0, 0, 0, 0)],
    [rgba('16', 1.9, null, true), rgba(16, 1, 0, 1)],
    [new String('red'), rgba(0, 0, 0, 0)]
  ];
  rows.forEach((row) => t.deepEqual(colorOf(row[0]), row[1], JSON.stringify(row[0])));
  t.end();
});

test('what is neither text nor object does nothing', (t) => {
  [undefined, null, 5, 0xff0000, true, Symbol('red')].forEach((argument) => {
    t.equal(colorOf(argument), null);
  });
  const { canvas } = newCanvas();
  t.equal(canvas.setColor(), undefined);
  t.deepEqual(recorder.calls(), []);
  t.end();
});

const RED = rgba(255, 0, 0, 255);
const BLUE = rgba(0, 0, 255, 255);

// [what is set, one after the other, and which colours reach the porting layer]
const REPETITIONS = [
  ['a repeated text', ['red', 'red'], [RED]],
  ['another spelling of the present colour', ['red', 'RED', '#f00', '#ff0000', RED], [RED]],
  ['repeated numbers', [RED, RED, 'red'], [RED]],
  ['the start value, as numbers', [rgba(0xab, 0xba, 0x57, 0)], []],
  ['the start value, as a text', ['#abba5700'], []],
  ['the start value, later', [RED, rgba(0xab, 0xba, 0x57, 0)], [RED, rgba(0xab, 0xba, 0x57, 0)]],
  ['the empty text on a new canvas', [''], []],
  ['the empty text later', ['red', ''], [RED, WHITE]],
  ['a text once more after numbers', ['red', BLUE, 'red'], [RED, BLUE]],
  ['another spelling after numbers', ['red', BLUE, 'RED'], [RED, BLUE, RED]],
  // 'RED' changed nothing, so that 'red' is still the text that is remembered.
  ['the spelling that changed it is kept', ['red', 'RED', BLUE, 'red'], [RED, BLUE]],
  ['a change of alpha alone', ['#ff0000', '#ff000080'], [RED, rgba(255, 0, 0, 128)]],
  ['no text at all in between', ['red', BLUE, '', 'red'], [RED, BLUE, WHITE, RED]]
];

REPETITIONS.forEach((row) => {
  test(`repetition: ${row[0]}`, (t) => {
    const { canvas } = newCanvas();
    t.deepEqual(colorsOf(canvas, row[1]), row[2]);
    t.end();
  });
});

test('a refused colour is tried again, in either form', (t) => {
  ['red', RED].forEach((argument) => {
    const { canvas } = newCanvas();
    recorder.once('pl_gfx_Canvas_SetColor', { status: 7 });
    t.deepEqual(colorsOf(canvas, [argument, argument, argument]), [RED, RED]);
  });
  const { canvas } = newCanvas();
  canvas.setColor('blue');
  recorder.once('pl_gfx_Canvas_SetColor', { status: 7 });
  t.deepEqual(colorsOf(canvas, ['red', 'blue']), [RED], 'the one before still counts as set');
  t.end();
});
