'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');

const services = quiravent.dataServices;
const open = (context) => services.getPersistent(context);

/** What set() makes of a value: [the text that arrives, what get() then gives]. */
function roundTrip(store, args) {
  recorder.clear();
  const result = store.set.apply(store, ['key'].concat(args));
  if (result !== undefined) throw new Error('set gave a result');
  const stored = recorder.argsOf('pl_persistent_SetValue').map((call) => call[2]);
  return stored.concat(store.get('key'));
}

test('getPersistent demands a text', (t) => {
  const text = 'getPersistent() error. I believe that you need to choose a context for this app.';
  recorder.clear();
  [[], [undefined], [null], [5], [{}], [new String('app')], [true]].forEach((args) => {
    t.throws(
      () => services.getPersistent.apply(services, args),
      (error) => error instanceof TypeError && error.message === text
    );
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('getPersistent opens the store of any context, anew each time', (t) => {
  ['', 'app', 'app', 'ünïcode/../x'].forEach((context) => {
    recorder.clear();
    const store = open(context);
    t.ok(store instanceof quiravent.persistent);
    t.deepEqual(recorder.sequence(), [['pl_persistent_GetPersistent', 'out', context]]);
    t.equal(recorder.calls()[0].thread, 'script');
  });
  t.notEqual(open('app'), open('app'));
  t.end();
});

test('each object keeps the handle that was given for its call', (t) => {
  const stores = [11, 4294967295].map((handle) => {
    recorder.once('pl_persistent_GetPersistent', { outputs: { handle } });
    return open('app');
  });
  recorder.clear();
  stores.forEach((store) => store.get('a'));
  stores.forEach((store) => store.set('a', 'b'));
  stores.forEach((store) => store.getAll());
  t.deepEqual(
    recorder.calls().map((call) => [call.fn, call.args[0]]),
    [
      ['pl_persistent_GetValue', 11],
      ['pl_persistent_GetValue', 4294967295],
      ['pl_persistent_SetValue', 11],
      ['pl_persistent_SetValue', 4294967295],
      ['pl_persistent_GetAllValues', 11],
      ['pl_persistent_GetAllValues', 4294967295]
    ]
  );
  t.ok(recorder.calls().every((call) => call.thread === 'script'));
  t.end();
});

test('a store that can’t be opened is undefined', (t) => {
  const failures = [
    { status: 1 },
    { status: -1, outputs: { handle: 5 } },
    { status: 0, outputs: { handle: 0 } },
    { status: 0, outputs: { handle: null } }
  ];
  failures.forEach((behaviour) => {
    recorder.once('pl_persistent_GetPersistent', behaviour);
    t.equal(open('app'), undefined, JSON.stringify(behaviour));
  });
  t.end();
});

// [arguments after the key, text that is stored, what get gives]
const VALUES = [
  [['abc'], 'abc', 'abc'],
  [[' a b '], ' a b ', ' a b '],
  [['ä日😀'], 'ä日😀', 'ä日😀'],
  [[''], '', undefined],
  [['null'], 'null', undefined],
  [['undefined'], 'undefined', undefined],
  [['Null'], 'Null', 'Null'],
  [['undefined '], 'undefined ', 'undefined '],
  [[null], '', undefined],
  [[undefined], '', undefined],
  [[], '', undefined],
  [[12.5], '12.5', '12.5'],
  [[0], '0', '0'],
  [[NaN], 'NaN', 'NaN'],
  [[true], 'true', 'true'],
  [[false], 'false', 'false'],
  [[[1, 2]], '1,2', '1,2'],
  [[[]], '', undefined],
  [[{}], '[object Object]', '[object Object]'],
  [[{ toString: () => 'mine' }], 'mine', 'mine'],
  [[new String('boxed')], 'boxed', 'boxed']
];

test('every value is stored as its text', (t) => {
  const store = open('values');
  VALUES.forEach((row) => {
    t.deepEqual(roundTrip(store, row[0]), row.slice(1), JSON.stringify(row[0]));
  });
  t.end();
});

test('a text given ends at its first NUL', (t) => {
  const store = open('nul');
  recorder.clear();
  store.set('k\0ey', 'v\0alue');
  store.get('k\0ey');
  open('app\0x');
  const texts = recorder.calls().map((call) => call.args.slice(1));
  t.deepEqual(texts, [['k', 'v'], ['k', ''], ['app']]);
  t.end();
});

test('a text given back ends at its first NUL', (t) => {
  const store = open('nul');
  recorder.once('pl_persistent_GetValue', { outputs: { value: 'ab\0cd' } });
  t.equal(store.get('key'), 'ab');
  recorder.once('pl_persistent_GetValue', { outputs: { value: '\0cd' } });
  t.equal(store.get('key'), '', 'the text itself was not empty');
  recorder.once('pl_persistent_GetAllValues', { outputs: { values: { 'k\0ey': 'v\0alue' } } });
  t.deepEqual(store.getAll(), { k: 'v' });
  t.end();
});

test('the result of the porting layer is not looked at', (t) => {
  const store = open('results');
  recorder.once('pl_persistent_GetValue', { status: 3, outputs: { value: 'kept' } });
  t.equal(store.get('key'), 'kept');
  recorder.once('pl_persistent_GetAllValues', { status: 3, outputs: { values: { a: 'b' } } });
  t.deepEqual(store.getAll(), { a: 'b' });
  recorder.once('pl_persistent_SetValue', { status: 3 });
  t.equal(store.set('key', 'x'), undefined);
  t.end();
});

test('a key that is no text reaches nothing', (t) => {
  const store = open('keys');
  recorder.clear();
  [[], [undefined], [null], [1], [{}], [new String('a')]].forEach((args) => {
    t.equal(store.get.apply(store, args), undefined);
    t.equal(store.set(args[0], 'x'), undefined);
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('keys are texts of any kind', (t) => {
  const store = open('more keys');
  ['', 'a b', 'ключ', '__proto__x', '0'].forEach((key) => {
    store.set(key, `value of ${key}`);
    t.equal(store.get(key), `value of ${key}`);
  });
  t.equal(store.get('missing'), undefined);
  t.end();
});

test('getAll gives every text as it is stored, in the order of keys', (t) => {
  const store = open('all');
  t.deepEqual(store.getAll(), {});
  const values = { b: 'null', Z: '', a: 'undefined', é: 'x', ab: '5' };
  Object.keys(values).forEach((key) => store.set(key, values[key]));
  store.set('null', null);
  store.get('missing');
  const all = store.getAll();
  t.deepEqual(all, Object.assign({ null: '' }, values));
  t.deepEqual(Object.keys(all), ['Z', 'a', 'ab', 'b', 'null', 'é']);
  t.equal(Object.getPrototypeOf(all), Object.prototype);
  t.equal(store.get('b'), undefined, 'although getAll gives its text');
  t.end();
});
