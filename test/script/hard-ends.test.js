'use strict';

// Calls that end their process by design, before anything reaches the porting layer.

const test = require('tape');
const { runScript } = require('./support/process');

const NO_TEXT = '{ toString() { throw new Error("no"); } }';
const NO_DIGITS = /invalid_argument[^]*stoi/;

// [what, call, signal, what is told of an exception that nobody catches]
const HARD_ENDS = [
  ['a canvas method without a native side', 'quiravent.canvas().getSize()', 'SIGSEGV'],
  ['the same, made with new', 'new quiravent.canvas().isInvalid()', 'SIGSEGV'],
  ['releasing without a native side', 'new quiravent.canvas().release()', 'SIGSEGV'],
  ['a store method without a native side', 'new quiravent.persistent().get("a")', 'SIGSEGV'],
  ['the same, whatever the key', 'quiravent.persistent().set(1, "x")', 'SIGSEGV'],
  ['the same, without a key', 'quiravent.persistent().getAll()', 'SIGSEGV'],
  ['a player method without a native side', 'quiravent.mediaPlayer().fetch()', 'SIGSEGV'],
  ['the same, of an ad player', 'new quiravent.adPlayer().getTime()', 'SIGSEGV'],
  ['the same, of a live player', 'new quiravent.dtvplayer().release()', 'SIGSEGV'],
  ['a font without a native side', 'canvas.setFont(quiravent.font())', 'SIGSEGV'],
  ['a source without a native side', 'canvas.compose(quiravent.canvas(), 0, 0)', 'SIGSEGV'],
  ['a plain object as font', 'canvas.setFont({})', 'SIGABRT'],
  ['a number as font', 'canvas.setFont(5)', 'SIGABRT'],
  ['a text as font', 'canvas.setFont("font")', 'SIGABRT'],
  ['a plain object as source', 'canvas.compose({}, 0, 0)', 'SIGABRT'],
  ['a boolean as source', 'canvas.compose(true, 0, 0)', 'SIGABRT'],
  ['a plain object as scaled source', 'canvas.composeScaled({})', 'SIGABRT'],
  ['null as part to compose', 'canvas.compose(canvas, 0, 0, null)', 'SIGSEGV'],
  ['null as destination', 'canvas.composeScaled(canvas, null)', 'SIGSEGV'],
  ['null as part to scale', 'canvas.composeScaled(canvas, undefined, null)', 'SIGSEGV'],
  ['null as a new player’s bounds', 'mediaServices.getPlayer("url", null, () => {})', 'SIGSEGV'],
  ['null as a player’s bounds', 'media.setBounds(null)', 'SIGSEGV'],
  ['null as a live player’s bounds', 'live.setBounds(null)', 'SIGSEGV'],
  ['unloading a player that has no listener', 'media.unload()', 'SIGSEGV'],
  ['the same, of an ad player', 'ad.unload()', 'SIGSEGV'],
  ['a selector without a text', `new quiravent.TunerWorker(${NO_TEXT}, "b")`, 'SIGABRT'],
  ['a symbol as selector', 'new quiravent.TunerWorker(Symbol("s"), "b")', 'SIGABRT']
].concat(
  [NO_TEXT, 'Symbol("s")', 'Object.create(null)'].map((value) => {
    return [`${value} as value`, `store.set("key", ${value})`, 'SIGABRT', /logic_error/];
  }),
  ['#zzzzzz', '#zzz', '#12zz56', '#123456zz', '#  0000', '#+-0000'].map((text) => {
    return [`${text} as colour`, `canvas.setColor("${text}")`, 'SIGABRT', NO_DIGITS];
  })
);

HARD_ENDS.forEach((row) => {
  test(`fatal: ${row[0]}`, (t) => {
    const source = `
      const { graphicServices, dataServices, tunerServices, mediaServices } = quiravent;
      const canvas = graphicServices.createCanvas(8, 8);
      const store = dataServices.getPersistent('app');
      const live = tunerServices.getPlayer(1, 2, 3);
      mediaServices.getPlayer('url', {}, (error, media) => {
        mediaServices.getAdPlayer('url', {}, (otherError, ad) => {
          recorder.echo();
          say('begin\\n');
          ${row[1]};
          say('survived');
        });
      });`;
    return runScript(source).then((result) => {
      t.equal(result.signal, row[2]);
      // The sizes of both canvases are asked for before rectangles are read.
      const mayAsk = /composeScaled/.test(row[1]);
      const lines = result.stdout.split('\n').filter((line) => !mayAsk || !/GetSize/.test(line));
      t.deepEqual(lines, ['begin', ''], 'no call reached the porting layer');
      if (row[3]) t.ok(row[3].test(result.stderr), 'by an exception that nobody catches');
    });
  });
});
