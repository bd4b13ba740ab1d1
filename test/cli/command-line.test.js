'use strict';

const test = require('tape');
const { inFolder, inSequence, launch } = require('./support/launcher');

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
    return inSequence(cases, (one) =>
      launch(one[0], {}, folder).then((result) => {
        t.deepEqual([result.code, result.stdout], [2, ''], one[0].join(' '));
        t.ok(/^quiravent: .*\n$/.test(result.stderr) && one[1].test(result.stderr), result.stderr);
      })
    );
  }));

test('--help of all verbs names their options and does nothing else', (t) =>
  inSequence(verbs, (verb) =>
    launch([verb, '--help']).then((result) => {
      t.deepEqual([result.code, result.stderr], [0, '']);
      t.ok(result.stdout.startsWith(`quiravent ${verb} [OPTION...]`), verb);
      t.ok(/\n {2}--help +print this/.test(result.stdout));
    })
  )
    .then(() => launch(['--help']))
    .then((result) =>
      verbs.forEach((verb) => t.ok(result.stdout.indexOf(`\n  ${verb} `) > 0, verb))
    ));

test('--version is that of the package', (t) =>
  launch(['--version']).then((result) =>
    t.equal(result.stdout, `${require('../../package.json').version}\n`)
  ));
