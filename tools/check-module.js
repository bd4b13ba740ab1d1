'use strict';

// node tools/check-module.js FILE: checks what a built module says of itself: its name, what it
// needs, and what it shows. Works for every processor.

const { Failure, main } = require('./lib/run');
const symbols = require('./lib/symbols');

/** The C and C++ runtime, by the names of the processors' loaders. */
const SYSTEM = /^(lib(c|m|gcc_s|stdc\+\+|pthread|dl|rt|atomic)\.so\.\d+|ld-linux[\w.-]*\.so\.\d+)$/;
const LAYER = 'libquiravent_porting_layer.so';
const EVENTS = '_ZN16PlatformServices15EnableDTVEventsEv';

function equal(one, other) {
  return JSON.stringify(one) === JSON.stringify(other);
}

function faultsOf(file) {
  const needed = symbols.dynamicValues(file, 'NEEDED');
  const missing = symbols.undefinedSymbols(file);
  const layer = missing.filter((name) => name.startsWith('pl_')).sort();
  const checks = [
    ['soname', equal(symbols.dynamicValues(file, 'SONAME'), ['quiravent.node'])],
    ['run path', equal(symbols.dynamicValues(file, 'RUNPATH'), ['$ORIGIN'])],
    ['needs the porting layer', needed.indexOf(LAYER) >= 0],
    ['needs system libraries else', needed.every((name) => name === LAYER || SYSTEM.test(name))],
    ['the functions of the interface', equal(layer, symbols.interfaceFunctions())],
    ['EnableDTVEvents is left open', missing.indexOf(EVENTS) >= 0],
    ['shows g_input_worker alone', equal(symbols.definedSymbols(file), ['g_input_worker'])]
  ];
  return checks.filter((check) => !check[1]).map((check) => check[0]);
}

function check(words) {
  if (words.length !== 1) throw new Failure('usage: node tools/check-module.js FILE');
  const faults = faultsOf(words[0]);
  if (faults.length > 0) throw new Failure(`${words[0]} fails in: ${faults.join(', ')}.`);
  console.log(`${words[0]}: as it should be`);
}

if (require.main === module) main(check);

module.exports = { check };
