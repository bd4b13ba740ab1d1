'use strict';

const test = require('tape');
const { execFileSync } = require('child_process');
const { modulePath } = require('./support/build');

/** The entries of the file's dynamic section, as [tag, value]. */
function dynamicEntries() {
  const lines = execFileSync('readelf', ['-d', '-W', modulePath], { encoding: 'utf8' }).split('\n');
  return lines
    .map((line) => line.match(/\((\w+)\).*\[(.*)\]/))
    .filter(Boolean)
    .map((match) => match.slice(1));
}

test('the loader knows the module by its name and where to look for a device', (t) => {
  const entries = dynamicEntries();
  const valuesOf = (tag) => entries.filter((entry) => entry[0] === tag).map((entry) => entry[1]);
  t.deepEqual(valuesOf('SONAME'), ['quiravent.node']);
  t.ok(valuesOf('NEEDED').indexOf('libquiravent_porting_layer.so') >= 0);
  t.deepEqual(valuesOf('RUNPATH'), ['$ORIGIN']);
  t.deepEqual(valuesOf('RPATH'), [], 'a system path must be able to come first');
  t.end();
});
