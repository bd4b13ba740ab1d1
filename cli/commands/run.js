'use strict';

const path = require('path');
const { Application } = require('../lib/application');
const { ControlChannel } = require('../lib/control-channel');
const { applicationEnvironment } = require('../lib/environment');
const { notes } = require('../lib/key-steps');
const { takeRuntimeOption } = require('../lib/runtime-options');
const { Session } = require('../lib/session');
const { watchEnding, watchStopping } = require('../lib/signals');
const types = require('../lib/types');

const options = [
  {
    name: '--headless',
    variable: 'QUIRAVENT_DISPLAY',
    setting: 'headless',
    excludes: '--window',
    help: 'without a window'
  },
  {
    name: '--window',
    variable: 'QUIRAVENT_DISPLAY',
    setting: 'window',
    help: 'in a window; by default where there is a display'
  },
  {
    name: '--config',
    value: 'FILE',
    type: types.existingFile,
    variable: 'QUIRAVENT_CONFIG',
    help: 'settings of the device; by default quiravent.config.json beside APPLICATION'
  },
  {
    name: '--control',
    value: 'PATH',
    type: types.socket,
    variable: 'QUIRAVENT_CONTROL',
    help: 'make a control socket there, for the other verbs'
  },
  {
    name: '--screenshot',
    value: 'FILE',
    type: types.file,
    variable: 'QUIRAVENT_SCREENSHOT',
    help: 'save the screen at the end; with %d or %06d in FILE, each frame under its number'
  },
  {
    name: '--storage',
    value: 'DIR',
    type: types.folder,
    variable: 'QUIRAVENT_STORAGE',
    help: 'keep the stored values there'
  },
  {
    name: '--keys',
    value: 'KEYS',
    type: types.keys,
    help: 'press keys, such as "ArrowDown*2,wait:500,Enter:1200,capture:list.png"'
  },
  {
    name: '--for',
    value: 'SECONDS',
    type: types.seconds,
    help: 'end the application after that time, with status 0'
  }
];

/** The variables that the options stand for. */
function settingsOf(given) {
  const settings = {};
  options
    .filter((option) => option.variable && given[option.name] !== undefined)
    .forEach((option) => {
      settings[option.variable] = option.setting || given[option.name];
    });
  return settings;
}

/** The file for the picture at the end; one for each frame needs none. */
function lastPictureOf(given) {
  const file = given['--screenshot'];
  return file && file.indexOf('%') < 0 ? file : undefined;
}

/** A channel, if the user named one or the launcher has something to say; else null. */
function channelFor(given) {
  const named = given['--control'] || process.env.QUIRAVENT_CONTROL;
  const isNeeded = given['--keys'] || given['--for'] || lastPictureOf(given);
  return named || isNeeded ? new ControlChannel(named && path.resolve(named)) : null;
}

function startTimer(given, session) {
  return given['--for'] && setTimeout(() => session.finish(), given['--for'] * 1000);
}

function supervise(application, session, given) {
  watchEnding(
    (signal) => session.interrupt(signal),
    () => application.signal('SIGKILL')
  );
  watchStopping(application);
  process.on('exit', () => application.signal('SIGKILL'));
  const timer = startTimer(given, session);
  const ended = application.run().then((status) => {
    clearTimeout(timer);
    return session.close().then(() => (session.failed ? 1 : status));
  });
  return Promise.all([ended, session.playKeys()]).then((results) => results[0]);
}

function run(parsed) {
  const given = parsed.options;
  const script = parsed.operands[0];
  const settings = settingsOf(given);
  const channel = channelFor(given);
  if (channel) settings.QUIRAVENT_CONTROL = channel.path;
  const environment = applicationEnvironment(process.env, script.main, settings);
  const words = parsed.foreign.concat(script.path, parsed.operands.slice(1));
  const application = new Application(words, environment);
  const session = new Session(application, channel, given['--keys'] || [], lastPictureOf(given));
  const opened = channel ? channel.open() : Promise.resolve();
  return opened.then(() => supervise(application, session, given));
}

module.exports = {
  name: 'run',
  summary: 'run an application, unmodified, on the device of this machine',
  program: true,
  operands: [
    { name: 'APPLICATION', type: types.application },
    { name: 'ARGUMENT', type: types.text, optional: true, many: true }
  ],
  options,
  takeForeign: takeRuntimeOption,
  notes: [
    `KEYS are separated by commas. ${notes}`,
    "The exit status is the application's; 128+N when signal N killed it."
  ],
  run
};
