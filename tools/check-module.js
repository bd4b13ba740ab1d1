'use strict';

// node tools/check-module.js FILE FOLDER ABI PROGRAM: checks what a built module says of itself: its
// name, what it needs, what it shows, and the record that it registers. Works for every processor.
// FOLDER is that of the build, ABI the module interface of the runtime it was built for, and
// PROGRAM that runtime, of whichever processor.

const { Failure, main } = require('./lib/run');
const symbols = require('./lib/symbols');

/** The C and C++ runtime, by the names of the processors' loaders. */
const SYSTEM = /^(lib(c|m|gcc_s|stdc\+\+|pthread|dl|rt|atomic)\.so\.\d+|ld-linux[\w.-]*\.so\.\d+)$/;
const LAYER = 'libquiravent_porting_layer.so';
const EVENTS = '_ZN16PlatformServices15EnableDTVEventsEv';
const SHOWN = ['g_input_worker'];

function equal(one, other) {
  return JSON.stringify(one) === JSON.stringify(other);
}

/** What a module must register for a module interface. */
function recordOf(abi) {
  return {
    version: abi,
    flags: 0,
    library: false,
    file: '../src/Quiravent',
    initialise: true,
    initialiseContext: false,
    name: 'quiravent',
    data: false,
    next: false,
    writable: true,
    registrations: 1,
    isLast: true,
    // Null until a script makes a worker.
    inputWorker: false
  };
}

const shownBy = new Map();

/** The functions that a runtime's program shows; asked once, for there are some 50,000. */
function functionsOf(program) {
  if (!shownBy.has(program)) {
    const shown = symbols.definedSymbols(program).map((symbol) => symbol.name);
    shownBy.set(program, new Set(symbols.readableNames(shown)));
  }
  return shownBy.get(program);
}

/** The functions that the module wants of the runtime and that a runtime's program lacks. */
function missingFrom(program, wanted) {
  const there = functionsOf(program);
  return symbols.readableNames(wanted).filter((name) => !there.has(name));
}

/** [what is checked, what was found, what there should be] of the loader's side. */
function linkingOf(file) {
  const needed = symbols.dynamicValues(file, 'NEEDED');
  const shown = symbols.definedSymbols(file).map((symbol) => symbol.name);
  const slots = symbols.relocationsOf(file, EVENTS).map((kind) => /JUMP_SLOT$/.test(kind));
  return [
    ['soname', symbols.dynamicValues(file, 'SONAME'), ['quiravent.node']],
    ['run path', symbols.dynamicValues(file, 'RUNPATH'), ['$ORIGIN']],
    ['the porting layer it needs', needed.filter((name) => name === LAYER), [LAYER]],
    ['else', needed.filter((name) => name !== LAYER && !SYSTEM.test(name)), []],
    ['what it shows', shown, SHOWN],
    ['EnableDTVEvents bound at its first call', slots, [true]],
    ['binding all at once', symbols.bindsAtOnce(file), false]
  ];
}

/** The same of what the module leaves undefined. */
function wantsOf(file, program) {
  const own = symbols.undefinedSymbols(file).filter((one) => one.version === '' && !one.isWeak);
  const names = own.map((symbol) => symbol.name);
  const layer = names.filter((name) => name.startsWith('pl_')).sort();
  const rest = names.filter((name) => !name.startsWith('pl_') && name !== EVENTS);
  return [
    ['functions of the porting layer', layer, symbols.interfaceFunctions()],
    ['functions that the runtime lacks', missingFrom(program, rest), []]
  ];
}

/** Checks a module; throws a Failure that names all that is wrong. */
function check(file, folder, abi, program) {
  const found = linkingOf(file)
    .concat(wantsOf(file, program))
    .concat([['module record', symbols.moduleRecord(file, folder), recordOf(abi)]]);
  const faults = found
    .filter((one) => !equal(one[1], one[2]))
    .map((one) => `${one[0]}: ${JSON.stringify(one[1])} instead of ${JSON.stringify(one[2])}`);
  if (faults.length > 0) throw new Failure(`${file} is not as it should be.\n${faults.join('\n')}`);
}

if (require.main === module) {
  main((words) => {
    if (words.length !== 4) {
      throw new Failure('usage: node tools/check-module.js FILE FOLDER ABI PROGRAM');
    }
    check(words[0], words[1], Number(words[2]), words[3]);
    console.log(`${words[0]}: as it should be`);
  });
}

module.exports = { check };
