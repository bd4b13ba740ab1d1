'use strict';

// Flags: --predictable
// Calls that end their process by design, before anything reaches the porting layer.

const fs = require('fs');
const test = require('tape');
const { inChild } = require('./support/fork');
const quiravent = require('./support/module');
const recorder = require('./support/recorder');
const { newPlayer } = require('./support/workers');

const { graphicServices, dataServices, tunerServices, mediaServices } = quiravent;

const canvas = graphicServices.createCanvas(8, 8);
const store = dataServices.getPersistent('app');
const live = tunerServices.getPlayer(1, 2, 3);
/** The players of both kinds, once they are made. */
let media;
let ad;

const say = (text) => fs.writeSync(1, text);
const NO_TEXT = {
  toString() {
    throw new Error('no');
  }
};
const NO_DIGITS = /invalid_argument[^]*stoi/;

// [what, call, signal, what is told of an exception that nobody catches]
const HARD_ENDS = [
  ['a canvas method without a native side', () => quiravent.canvas().getSize(), 'SIGSEGV'],
  ['the same, made with new', () => new quiravent.canvas().isInvalid(), 'SIGSEGV'],
  ['releasing without a native side', () => new quiravent.canvas().release(), 'SIGSEGV'],
  ['a store method without a native side', () => new quiravent.persistent().get('a'), 'SIGSEGV'],
  ['the same, whatever the key', () => quiravent.persistent().set(1, 'x'), 'SIGSEGV'],
  ['the same, without a key', () => quiravent.persistent().getAll(), 'SIGSEGV'],
  ['a player method without a native side', () => quiravent.mediaPlayer().fetch(), 'SIGSEGV'],
  ['the same, of an ad player', () => new quiravent.adPlayer().getTime(), 'SIGSEGV'],
  ['the same, of a live player', () => new quiravent.dtvplayer().release(), 'SIGSEGV'],
  ['a font without a native side', () => canvas.setFont(quiravent.font()), 'SIGSEGV'],
  ['a source without a native side', () => canvas.compose(quiravent.canvas(), 0, 0), 'SIGSEGV'],
  ['a plain object as font', () => canvas.setFont({}), 'SIGABRT'],
  ['a number as font', () => canvas.setFont(5), 'SIGABRT'],
  ['a text as font', () => canvas.setFont('font'), 'SIGABRT'],
  ['a plain object as source', () => canvas.compose({}, 0, 0), 'SIGABRT'],
  ['a boolean as source', () => canvas.compose(true, 0, 0), 'SIGABRT'],
  ['a plain object as scaled source', () => canvas.composeScaled({}), 'SIGABRT'],
  ['null as part to compose', () => canvas.compose(canvas, 0, 0, null), 'SIGSEGV'],
  ['null as destination', () => canvas.composeScaled(canvas, null), 'SIGSEGV'],
  ['null as part to scale', () => canvas.composeScaled(canvas, undefined, null), 'SIGSEGV'],
  ['null as first bounds', () => mediaServices.getPlayer('url', null, () => {}), 'SIGSEGV'],
  ['null as a player’s bounds', () => media.setBounds(null), 'SIGSEGV'],
  ['null as a live player’s bounds', () => live.setBounds(null), 'SIGSEGV'],
  ['unloading a player that has no listener', () => media.unload(), 'SIGSEGV'],
  ['the same, of an ad player', () => ad.unload(), 'SIGSEGV'],
  ['a selector without a text', () => new quiravent.TunerWorker(NO_TEXT, 'b'), 'SIGABRT'],
  ['a symbol as selector', () => new quiravent.TunerWorker(Symbol('s'), 'b'), 'SIGABRT'],
  ['a value without a text', () => store.set('key', NO_TEXT), 'SIGABRT', /logic_error/],
  ['a symbol as value', () => store.set('key', Symbol('s')), 'SIGABRT', /logic_error/],
  ['a bare object as value', () => store.set('key', Object.create(null)), 'SIGABRT', /logic_error/]
].concat(
  ['#zzzzzz', '#zzz', '#12zz56', '#123456zz', '#  0000', '#+-0000'].map((text) => {
    return [`${text} as colour`, () => canvas.setColor(text), 'SIGABRT', NO_DIGITS];
  })
);

test('calls that don’t end a process are told from those that do', (t) => {
  return Promise.all(['media', 'ad'].map(newPlayer))
    .then((made) => {
      media = made[0].player;
      ad = made[1].player;
      return inChild(() => say(String(canvas.getSize().w)));
    })
    .then((end) => t.deepEqual([end.code, end.signal, end.stdout], [0, null, '8']));
});

HARD_ENDS.forEach((row) => {
  test(`fatal: ${row[0]}`, (t) => {
    const act = () => {
      recorder.echo();
      say('begin\n');
      row[1]();
      say('survived');
    };
    return inChild(act).then((end) => {
      t.equal(end.signal, row[2]);
      // The sizes of both canvases are asked for before rectangles are read.
      const mayAsk = /composeScaled/.test(row[1]);
      const lines = end.stdout.split('\n').filter((line) => !mayAsk || !/GetSize/.test(line));
      t.deepEqual(lines, ['begin', ''], 'no call reached the porting layer');
      if (row[3]) t.ok(row[3].test(end.stderr), 'by an exception that nobody catches');
    });
  });
});
