'use strict';

// The types that editors show, against what the module exports: neither has what the other lacks.

const fs = require('fs');
const path = require('path');
const test = require('tape');
const quiravent = require('./support/module');

const source = fs
  .readFileSync(path.join(__dirname, '..', '..', 'lib', 'index.d.ts'), 'utf8')
  .replace(/\/\*[^]*?\*\//g, '');

/** What stands between the brace at a place and the one that closes it, without inner braces. */
function bodyAt(place) {
  let depth = 0;
  let body = '';
  for (let at = source.indexOf('{', place); ; at++) {
    const sign = source[at];
    if (sign === '}' && --depth === 0) return body;
    if (depth === 1 && sign !== '{') body += sign;
    if (sign === '{') depth++;
  }
}

function methodsIn(body) {
  const names = body.match(/^ {2}\w+(?=\()/gm) || [];
  return Array.from(new Set(names.map((name) => name.trim())));
}

/** The methods of an interface and of those that it extends. */
function methodsOf(name) {
  const found = new RegExp(`^export interface ${name}( extends (\\w+))? {`, 'm').exec(source);
  const inherited = found[2] ? methodsOf(found[2]) : [];
  return inherited.concat(methodsIn(bodyAt(found.index)));
}

/** By the name of each export, the names of its members: a namespace's, or those of instances. */
function declaredExports() {
  const declared = {};
  const pattern = /^export const (\w+):/gm;
  for (let found = pattern.exec(source); found; found = pattern.exec(source)) {
    const body = bodyAt(found.index);
    const instance = /new \([^]*?\): (\w+)/.exec(body);
    declared[found[1]] = instance ? methodsOf(instance[1]) : methodsIn(body);
  }
  return declared;
}

/** The same of the module. */
function liveExports() {
  const live = {};
  Object.getOwnPropertyNames(quiravent).forEach((name) => {
    const value = quiravent[name];
    const holder = typeof value === 'function' ? value.prototype : value;
    live[name] = Object.getOwnPropertyNames(holder).filter((each) => each !== 'constructor');
  });
  return live;
}

test('the types declare what the module exports, and nothing else', (t) => {
  const declared = declaredExports();
  const live = liveExports();
  t.deepEqual(Object.keys(declared).sort(), Object.keys(live).sort(), 'the exports');
  Object.keys(live).forEach((name) =>
    t.deepEqual((declared[name] || []).sort(), live[name].sort(), name)
  );
  t.end();
});
