'use strict';

// Which libraries of a process take which symbols from the script runtime, as the loader tells it.
// A runtime exports its own copies of OpenSSL, zlib, ICU and more; a library of the device that is
// bound to them runs with another version than the one it was built for.

const fs = require('fs');
const path = require('path');
const { mustRun } = require('./run');
const { definedSymbols } = require('./symbols');

/**
 * What a library of the device may take: instances of templates of the C++ library, of which a
 * process has one by the rules of the language, whoever has brought it; and the program's beginning,
 * which libraries for sound look for without need.
 */
const SHARED = /^(_ZN?K?St.*|main)$/;

/** The module takes from the runtime by design. */
const MODULE = 'quiravent.node';

/** The variables that have the loader bind all at once and log it, to `file` and a process number. */
function logVariables(file) {
  return { LD_DEBUG: 'bindings', LD_DEBUG_OUTPUT: file, LD_BIND_NOW: '1' };
}

function linesOf(program, words) {
  return mustRun(program, words, { capture: true }).stdout.split('\n');
}

/** The names of the libraries that a program needs. */
function librariesOf(program) {
  return linesOf('ldd', [program]).map((line) => path.basename(line.trim().split(/\s+/)[0]));
}

/**
 * What a program defines itself. Objects that the linker has put there for another library, such as
 * stdout, belong to that library; the same holds for functions that are undefined in the program
 * though they have an address in it.
 */
function ownSymbols(program) {
  const own = new Set(definedSymbols(program).map((symbol) => symbol.name));
  linesOf('readelf', ['-r', '-W', program])
    .filter((line) => line.indexOf('_COPY ') > 0)
    .forEach((line) => own.delete(line.trim().split(/\s+/)[4].split('@')[0]));
  return own;
}

/** All { library, target, symbol } that the processes of a log have bound. */
function readBindings(file) {
  const folder = path.dirname(file);
  const text = fs
    .readdirSync(folder)
    .filter((name) => name.startsWith(`${path.basename(file)}.`))
    .map((name) => fs.readFileSync(path.join(folder, name), 'utf8'))
    .join('');
  const pattern = /binding file (\S+) \[\d+\] to (\S+) \[\d+\]: \w+ symbol `([^']+)'/g;
  const found = [];
  for (let match = pattern.exec(text); match; match = pattern.exec(text)) {
    found.push({ library: path.basename(match[1]), target: match[2], symbol: match[3] });
  }
  return found;
}

/** What libraries of the device take of a runtime's own, by a log, and shouldn't: { library, symbol }. */
function takenFrom(program, file) {
  const others = new Set(librariesOf(program).concat(path.basename(program), MODULE));
  const own = ownSymbols(program);
  return readBindings(file).filter(
    (one) =>
      one.target === program &&
      !others.has(one.library) &&
      own.has(one.symbol) &&
      !SHARED.test(one.symbol)
  );
}

module.exports = { logVariables, takenFrom };
