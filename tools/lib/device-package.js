'use strict';

// The package that is copied to a set-top box.

const fs = require('fs');
const path = require('path');
const { root } = require('./run');

/** What of the project lies where in the package, besides the native module: files and folders. */
const PLACES = [
  ['docs/integrators.md', 'README.md'],
  ['docs/application-guide.md', 'docs/application-guide.md'],
  ['docs/porting-guide.md', 'docs/porting-guide.md'],
  ['LICENSE', 'LICENSE'],
  ['lib', 'lib'],
  ['src/porting', 'porting']
];

function makeFolder(folder) {
  if (fs.existsSync(folder)) return;
  makeFolder(path.dirname(folder));
  fs.mkdirSync(folder);
}

function copy(from, to) {
  makeFolder(path.dirname(to));
  fs.writeFileSync(to, fs.readFileSync(from));
}

/** Where in the package a file of the project lies; null if it isn't there. */
function placeOf(name) {
  const pair = PLACES.find((each) => name === each[0] || name.startsWith(`${each[0]}/`));
  return pair ? pair[1] + name.slice(pair[0].length) : null;
}

/** A page with its links as they must be in the package; those to elsewhere become plain text. */
function relinked(text, from, to) {
  return text.replace(
    /\[([^\]]*)\]\((?!https?:)([^)#]+)(#[^)]*)?\)/g,
    (link, words, target, part) => {
      const place = placeOf(path.posix.join(path.posix.dirname(from), target));
      if (!place) return words;
      return `[${words}](${path.posix.relative(path.posix.dirname(to), place)}${part || ''})`;
    }
  );
}

function copyPlace(folder, from, to) {
  const source = path.join(root, from);
  if (fs.statSync(source).isDirectory()) {
    fs.readdirSync(source).forEach((name) => copyPlace(folder, `${from}/${name}`, `${to}/${name}`));
    return;
  }
  const target = path.join(folder, to);
  copy(source, target);
  if (to.endsWith('.md')) {
    fs.writeFileSync(target, relinked(fs.readFileSync(source, 'utf8'), from, to));
  }
}

function manifest(processor) {
  const own = require(path.join(root, 'package.json'));
  return {
    name: own.name,
    version: own.version,
    description: own.description,
    license: own.license,
    main: own.main,
    types: own.types,
    exports: own.exports,
    os: ['linux'],
    cpu: [processor]
  };
}

/**
 * Makes a package in a folder that isn't there yet.
 * @param {string} module the native module's file
 * @param {string} processor by the runtime's name, as arm
 */
function makePackage(folder, module, processor) {
  PLACES.forEach((pair) => copyPlace(folder, pair[0], pair[1]));
  copy(module, path.join(folder, 'quiravent.node'));
  const text = JSON.stringify(manifest(processor), null, 2) + '\n';
  fs.writeFileSync(path.join(folder, 'package.json'), text);
}

module.exports = { makePackage };
