'use strict';

// What makes up the size of a built module.

const fs = require('fs');
const { mustRun } = require('./run');

/** Kinds of sections; the first that fits is taken. */
const SECTIONS = [
  ['code', /^\.(text|init|fini)$/],
  ['calls of other libraries', /^\.(plt|rel\.plt|got)$/],
  ['constants', /^\.rodata$/],
  ['exception tables', /^\.(ARM\.ex\w+|eh_frame\w*|gcc_except_table)$/],
  ['names for the loader', /^\.(dynsym|dynstr|gnu\.hash|gnu\.version\w*)$/],
  ['addresses for the loader', /^\.(rel\.dyn|dynamic)$/],
  ['data', /^\.(data\S*|init_array|fini_array|tm_clone_table)$/]
];

/** Kinds of functions, by what their names hold or begin with. */
const FUNCTIONS = [
  ['made from templates of the C++ library', /^(\w[^(]* )?(std|__gnu_cxx)::/],
  ['event workers', /Worker|EventJob|MessageQueue|Listeners/],
  ['made from templates of Nan', /^(\w[^(]* )?Nan::/],
  ['tables', /__static_init|_GLOBAL__/],
  ['script classes and namespaces', /Wrapper|Dispatch|FunctionCallbackInfo|quiravent::|v8::/],
  ['native classes', /./]
];

/** Adds sizes up by kind, largest first: [[kind, bytes]]. */
function sumByKind(kinds, sized, otherwise) {
  const sums = new Map();
  sized.forEach((one) => {
    const kind = kinds.find((each) => each[1].test(one[0]));
    const name = kind ? kind[0] : otherwise;
    sums.set(name, (sums.get(name) || 0) + one[1]);
  });
  return Array.from(sums).sort((one, other) => other[1] - one[1]);
}

/** [[name, bytes]] of the sections that lie in a file. */
function sectionsOf(file) {
  const lines = mustRun('readelf', ['-S', '-W', file], { capture: true }).stdout.split('\n');
  return lines
    .map((line) => line.match(/\] (\.\S+) +(\w+) +\w+ \w+ (\w+)/))
    .filter((found) => found && found[2] !== 'NOBITS')
    .map((found) => [found[1], parseInt(found[3], 16)]);
}

/** [[name, bytes]] of all functions, each place once though several names may stand for it. */
function functionsOf(symbols) {
  const lines = mustRun('nm', ['-S', '-C', symbols], { capture: true }).stdout.split('\n');
  const byPlace = new Map();
  lines
    .map((line) => line.match(/^(\w+) (\w+) [tTwW] (.+)$/))
    .filter((found) => found)
    .forEach((found) => byPlace.set(found[1], [found[3], parseInt(found[2], 16)]));
  return Array.from(byPlace.values());
}

function table(rows) {
  return rows.map((row) => `${String(row[1]).padStart(8)}  ${row[0]}`).join('\n');
}

/** A text: the parts of a stripped file, and of its code by the symbols that were taken from it. */
function describeSize(file, symbols) {
  const sections = sectionsOf(file);
  const whole = fs.statSync(file).size;
  const rest = sections.reduce((sum, section) => sum - section[1], whole);
  const parts = sumByKind(SECTIONS, sections.concat([['', rest]]), 'headers and gaps');
  const code = sumByKind(FUNCTIONS, functionsOf(symbols), '');
  return `${table(parts)}\n${table([['bytes in all', whole]])}\n\nOf the code:\n${table(code)}`;
}

module.exports = { describeSize };
