'use strict';

const test = require('tape');
const { row } = require('../script/support/rows');
const { inFolder, runRows } = require('./support/launcher');

const verbs =
  'run press screenshot state message keys players halt captions faults tuner signal lineup doctor'.split(
    ' '
  );

test('a wrong command line is told in one line that names what is wrong, with status 2', (t) =>
  inFolder((folder, write) => {
    const app = write('app.js', 'console.log("ran")');
    const long = `/${'x'.repeat(107)}`;
    const cases = [
      [[], /a verb is missing; allowed: run, press, .*--version/],
      [['fly'], /unknown verb 'fly'; allowed: run, press/],
      [['press'], /press: KEY is missing; allowed: the name/],
      [['press', '--jsn', 'Enter'], /press: unknown option '--jsn'; allowed: --control, .*--help/],
      [['press', '-j'], /press: unknown option '-j'/],
      [['press', 'Enter*0'], /press: KEY is 'Enter\*0'; allowed/],
      [['press', 'Enter*1001'], /press: KEY is 'Enter\*1001'; allowed/],
      [['press', 'Enter:600001'], /press: KEY is 'Enter:600001'; allowed/],
      [['press', 'wait:soon'], /press: KEY is 'wait:soon'; allowed/],
      [['press', 'wait'], /press: KEY is 'wait'; allowed/],
      [['press', 'playing:end'], /press: KEY is 'playing:end'; allowed: .*playing:MS/],
      [['press', 'capture:'], /press: KEY is 'capture:'; allowed/],
      [['press', 'quit:1'], /press: KEY is 'quit:1'; allowed/],
      [['press', 'Enter'], /press: --control is missing; allowed: --control PATH/],
      [['state', 'paused', 'running'], /state: unexpected 'running'; allowed: NAME/],
      [['keys', 'all'], /keys: unexpected 'all'; allowed: no operand/],
      [['keys', '--json=yes'], /keys: --json takes no value, not 'yes'/],
      [['keys', '--control'], /keys: --control needs a value; allowed: the path of a Unix/],
      [['keys', '--control', long], /keys: --control is '.*'; allowed: .* at most 107 bytes/],
      [['keys', '--timeout', '0'], /keys: --timeout is '0'; allowed: a number of seconds/],
      [['message', 'name'], /message: VALUE is missing/],
      [['halt', 'stop', '1'], /halt: HOW is 'stop'; allowed: suspend, abort/],
      [['halt', 'abort'], /halt: PLAYER is missing; allowed: a number from 1 on/],
      [['halt', 'abort', '0'], /halt: PLAYER is '0'; allowed: a number from 1 on/],
      [['faults', 'on'], /faults: FAULT is missing; allowed: a number from 1 on/],
      [['faults', '1', '2'], /faults: SWITCH is '1'; allowed: on, off/],
      [['signal', 'lost'], /signal: VALUE is missing; allowed/],
      [['signal', 'noise', '1'], /signal: WHAT is 'noise'; allowed: lost, errors, delay/],
      [['screenshot', ''], /screenshot: FILE is ''; allowed: the path of a file/],
      [['lineup', 'fly'], /lineup: ACTION is 'fly'; allowed: make, check/],
      [['lineup', 'make', 'a.json'], /make with 1 file names; allowed: lineup make FILE.json OUT/],
      [['run'], /run: APPLICATION is missing; allowed: a script/],
      [['run', 'none.js'], /run: APPLICATION is 'none.js'; allowed: a script/],
      [['run', '--headless', '--window', app], /--headless contradicts --window/],
      [['run', '--for', '1e3', app], /--for is '1e3'; allowed: a number of seconds/],
      [['run', '--for', '-1', app], /--for is '-1'; allowed/],
      [['run', '--config', folder, app], /--config is '.*'; allowed: .* a file that exists/],
      [['run', '--keys', 'Enter,', app], /--keys is 'Enter,'; allowed: words with commas/],
      [['run', '-r'], /run: the runtime doesn't accept '-r': it needs a value/]
    ];
    const oneLineWith = (pattern) => new RegExp(`^quiravent: .*${pattern.source}.*\\n$`);
    return runRows(
      t,
      cases.map(([words, error]) => row(words, 2, '', oneLineWith(error))),
      {},
      folder
    );
  }));

test('--help of all verbs names their options and does nothing else', (t) => {
  const help = (verb) =>
    row(
      [verb, '--help'],
      0,
      new RegExp(`^quiravent ${verb} \\[OPTION[^]*\n {2}--help +print this`),
      ''
    );
  const all = new RegExp(verbs.map((verb) => `\n  ${verb} [^]*`).join(''));
  const version = `${require('../../package.json').version}\n`;
  const others = [row(['--help'], 0, all, ''), row(['--version'], 0, version, '')];
  return runRows(t, verbs.map(help).concat(others));
});
