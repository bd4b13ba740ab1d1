'use strict';

// What a built module says of itself to the loader and to a script runtime: read with binutils, and
// by loading it.

const fs = require('fs');
const path = require('path');
const { Failure, mustRun, root, run } = require('./run');
const { emulatorOf } = require('./processors');

function linesOf(program, words) {
  return mustRun(program, words, { capture: true }).stdout.split('\n');
}

function dynamicLines(file) {
  return linesOf('readelf', ['-d', '-W', file]);
}

/** The values of a tag of the dynamic section, such as NEEDED. */
function dynamicValues(file, tag) {
  return dynamicLines(file)
    .filter((line) => line.indexOf(`(${tag})`) >= 0)
    .map((line) => line.match(/\[(.*)\]/)[1]);
}

/** Whether the loader is to bind all functions at once, instead of each at its first call. */
function bindsAtOnce(file) {
  return dynamicLines(file).some((line) => /BIND_NOW|FLAGS_1\).*\bNOW\b/.test(line));
}

/** The kinds of the relocations that name a symbol, such as R_ARM_JUMP_SLOT. */
function relocationsOf(file, symbol) {
  return linesOf('readelf', ['-r', '-W', file])
    .map((line) => line.trim().split(/\s+/))
    .filter((words) => words.length > 4 && words[4].split('@')[0] === symbol)
    .map((words) => words[2]);
}

/** The symbols of a file: { name, version ('' for none), isWeak }. */
function symbols(file, which) {
  return linesOf('nm', ['-D', which, file])
    .map((line) => line.trim().match(/(\w) ([^\s@]+)(@\S+)?$/))
    .filter((found) => found)
    .map((found) => ({
      name: found[2],
      version: found[3] || '',
      isWeak: /[wWvV]/.test(found[1])
    }));
}

const undefinedSymbols = (file) => symbols(file, '--undefined-only');
const definedSymbols = (file) => symbols(file, '--defined-only');

/**
 * Names as a programmer reads them. Where these hold types whose size is the processor's, all
 * processors give the same.
 */
function readableNames(names) {
  const found = run('c++filt', [], { input: names.join('\n') + '\n', stdio: 'pipe' });
  if (found.status !== 0) throw new Failure(`c++filt failed: ${found.stderr}`);
  return found.stdout
    .split('\n')
    .slice(0, names.length)
    .map((name) => name.replace(/\blong long\b/g, '64 bits').replace(/\blong\b/g, 'int'));
}

/** The names of all functions of the porting layer's interface, from its list. */
function interfaceFunctions() {
  const list = fs.readFileSync(path.join(root, 'src', 'porting', 'pl_functions.def'), 'utf8');
  const names = list.match(/^PL_FUNCTION\([^,]+,\s*\w+/gm);
  return names.map((text) => text.match(/\w+$/)[0]).sort();
}

/**
 * The record that a module registers, as tools/module-record prints it. A build's folder has that
 * program, and under symbols/ a porting layer of names alone.
 */
function moduleRecord(file, folder) {
  const words = emulatorOf(file).concat(path.join(folder, 'module_record'), path.resolve(file));
  const env = Object.assign({}, process.env, { LD_LIBRARY_PATH: path.join(folder, 'symbols') });
  const found = run(words[0], words.slice(1), { capture: true, env });
  return found.status === 0 ? JSON.parse(found.stdout) : { error: found.stderr.trim() };
}

module.exports = {
  bindsAtOnce,
  definedSymbols,
  dynamicValues,
  interfaceFunctions,
  moduleRecord,
  readableNames,
  relocationsOf,
  undefinedSymbols
};
