'use strict';

// What an application needs around it that a plain `node app.js` lacks.

const fs = require('fs');
const path = require('path');
const { findNativeModule } = require('../../lib/native-module');
const { Failure } = require('./failures');

// An event worker occupies one thread of the runtime's pool for as long as it is open. There are
// four classes of them (input, player, advertisement player, tuner), as many as the pool has threads
// by default: with all open, no image would ever load, nor any file be read. Several players may be
// open at once, and the jobs of the module and of the runtime want threads too.
const POOL_THREADS = 16;

const CONFIGURATION = 'quiravent.config.json';

function poolSize(wanted) {
  return Number(wanted) > POOL_THREADS ? wanted : String(POOL_THREADS);
}

/** A search path with one more folder at its end, so that what the user put there comes first. */
function extended(searchPath, folder) {
  return searchPath ? `${searchPath}${path.delimiter}${folder}` : folder;
}

/** The file of the native module; throws Failure where it isn't built. */
function nativeModule() {
  try {
    return findNativeModule();
  } catch (error) {
    throw new Failure(error.message.replace(/^quiravent: /, ''));
  }
}

/** Settings that stand beside the application hold for it, unless others were named. */
function configurationBeside(inherited, script) {
  const file = path.join(path.dirname(script), CONFIGURATION);
  return !inherited.QUIRAVENT_CONFIG && fs.existsSync(file) ? { QUIRAVENT_CONFIG: file } : {};
}

/** The environment in which require('quiravent') works, from the one that was inherited. */
function moduleEnvironment(inherited) {
  const folder = path.dirname(nativeModule());
  const build = inherited.QUIRAVENT_BUILD;
  return Object.assign({}, inherited, build ? { QUIRAVENT_BUILD: path.resolve(build) } : {}, {
    LD_LIBRARY_PATH: extended(inherited.LD_LIBRARY_PATH, folder),
    NODE_PATH: extended(inherited.NODE_PATH, path.join(__dirname, '..', 'modules')),
    UV_THREADPOOL_SIZE: poolSize(inherited.UV_THREADPOOL_SIZE)
  });
}

/**
 * The environment of an application. script: its main file; settings: variables that the launcher's
 * options stand for.
 */
function applicationEnvironment(inherited, script, settings) {
  return Object.assign(
    moduleEnvironment(inherited),
    configurationBeside(inherited, script),
    { QUIRAVENT_LAUNCHER: '1' },
    settings
  );
}

module.exports = { applicationEnvironment, moduleEnvironment, nativeModule };
