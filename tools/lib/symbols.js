'use strict';

// What a built module says of itself to the loader, read with binutils.

const fs = require('fs');
const path = require('path');
const { mustRun, root } = require('./run');

function linesOf(program, words) {
  return mustRun(program, words, { capture: true }).stdout.split('\n');
}

/** The values of a tag of the dynamic section, such as NEEDED. */
function dynamicValues(file, tag) {
  return linesOf('readelf', ['-d', '-W', file])
    .filter((line) => line.indexOf(`(${tag})`) >= 0)
    .map((line) => line.match(/\[(.*)\]/)[1]);
}

function symbols(file, which) {
  return linesOf('nm', ['-D', which, file])
    .map((line) => line.trim().split(/\s+/).pop())
    .map((name) => name.split('@')[0])
    .filter((name) => name);
}

const undefinedSymbols = (file) => symbols(file, '--undefined-only');
const definedSymbols = (file) => symbols(file, '--defined-only');

/** The names of all functions of the porting layer's interface, from its list. */
function interfaceFunctions() {
  const list = fs.readFileSync(path.join(root, 'src', 'porting', 'pl_functions.def'), 'utf8');
  const names = list.match(/^PL_FUNCTION\([^,]+,\s*\w+/gm);
  return names.map((text) => text.match(/\w+$/)[0]).sort();
}

module.exports = { definedSymbols, dynamicValues, interfaceFunctions, undefinedSymbols };
