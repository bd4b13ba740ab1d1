'use strict';

const fs = require('fs');
const path = require('path');
const test = require('tape');
const recorder = require('./support/recorder');
const { projectFolder } = require('./support/build');

test('every function that is declared can be recorded', (t) => {
  const folder = path.join(projectFolder, 'src', 'porting');
  const declared = new Set(['PlatformServices::EnableDTVEvents']);
  fs.readdirSync(folder).forEach((name) => {
    const text = fs.readFileSync(path.join(folder, name), 'utf8');
    const declarations = text.match(/^PL_API\s+\w+\s+\w+/gm) || [];
    declarations.forEach((declaration) => declared.add(declaration.split(/\s+/)[2]));
  });
  t.equal(recorder.functions.length, declared.size);
  t.deepEqual(
    recorder.functions.filter((fn) => !declared.has(fn)),
    []
  );
  t.end();
});

test('what isn’t known is refused', (t) => {
  ['pl_gfx_Nothing', '', undefined].forEach((fn) => {
    t.throws(() => recorder.once(fn, {}), /is no function/);
    t.throws(() => recorder.always(fn, {}), /is no function/);
  });
  t.throws(() => recorder.calls('pl_gfx_Nothing'), /is no function/);
  t.throws(() => recorder.event('keyHeld', 1), /is no callback/);
  t.end();
});
