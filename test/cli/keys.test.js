'use strict';

// Keys and pictures while an application runs that stands for its device as well.

const fs = require('fs');
const path = require('path');
const test = require('tape');
const { row } = require('../script/support/rows');
const { DEVICE, Launcher, inFolder, inSequence, launch } = require('./support/launcher');

/** Draws a first frame and one for each key, each a little after its cause; tells all of it. */
const APPLICATION = `${DEVICE}
const draw = (device) => setTimeout(() => {
  say('frame ' + (device.frame + 1));
  device.flush();
}, 50);
const told = (command) => (request, device) => {
  say([command].concat(request.key || [], request.hold || []).join(' '));
  const results = FakeDevice.handlers[command](request, device);
  if (command === 'press') draw(device);
  return results;
};
const device = new FakeDevice({ press: told('press'), capture: told('capture'), quit: told('quit') });
`;
const START = 'device.listen(process.env.QUIRAVENT_CONTROL).then(draw);';

/** Runs the application with these options; the temporary folder has to be clean afterwards. */
function play(t, folder, write, source, options) {
  const words = ['run'].concat(options, write('app.js', source));
  return launch(words, { TMPDIR: folder }, folder).then((result) => {
    const left = fs.readdirSync(folder).filter((name) => /^quiravent-/.test(name));
    t.deepEqual(left, [], 'no private socket is left');
    return result;
  });
}

test('keys wait for the first frame, then each for the frame of the one before', (t) =>
  inFolder((folder, write) => {
    const keys = 'ArrowDown*2, Enter:80,capture:a.png,wait:1,GoBack,idle:100,quit';
    return play(t, folder, write, APPLICATION + START, ['--keys', keys]).then((result) => {
      t.deepEqual([result.code, result.stderr], [0, '']);
      const down = 'press ArrowDown, frame 2, press ArrowDown, frame 3';
      const rest = 'press Enter 80, frame 4, capture, press GoBack, frame 5, quit';
      t.equal(result.stdout.trim().replace(/\n/g, ', '), `frame 1, ${down}, ${rest}`);
      t.ok(fs.existsSync(path.join(folder, 'a.png')));
    });
  }));

test('--for asks the device to end, after the last picture was taken', (t) =>
  inFolder((folder, write) => {
    const options = ['--for', '5', '--screenshot', 'end.png', '--control', 'c'];
    return play(t, folder, write, APPLICATION + START, options).then((result) => {
      t.deepEqual([result.code, result.stderr], [0, '']);
      t.equal(result.stdout, 'frame 1\ncapture\nquit\n');
      t.deepEqual(fs.readdirSync(folder).sort(), ['app.js', 'end.png']);
    });
  }));

test('Ctrl-C takes the last picture too', (t) =>
  inFolder((folder, write) => {
    const words = ['run', '--screenshot', path.join(folder, 'end.png')];
    const launcher = new Launcher(words.concat(write('app.js', APPLICATION + START)));
    return launcher
      .waitFor('frame 1')
      .then(() => launcher.kill('SIGINT'))
      .then(() => launcher.ended)
      .then((result) => {
        t.deepEqual([result.code, result.stderr], [130, '']);
        t.equal(result.stdout, 'frame 1\ncapture\n');
        t.ok(fs.existsSync(path.join(folder, 'end.png')));
      });
  }));

test('keys that are refused, or come too late for the application, are told', (t) =>
  inFolder((folder, write) => {
    const keys = 'Enter,wait:600000,GoBack';
    const left = 'quiravent: run: the application ended before all keys were pressed; left: ';
    const all = `${left}Enter, wait:600000, GoBack\n`;
    const unknown = "quiravent: run: --keys: unknown key 'Entre'\n";
    const handling = (handlers) =>
      `${APPLICATION} Object.assign(device.handlers, ${handlers}); ${START}`;
    const exitAtEnter = `{ press: () => process.exit(6) }`;
    const exitLater = `{
      press: (request) => {
        setTimeout(() => process.exit(6), 200);
        device.flush();
        return { code: 13 };
      }
    }`;
    const exitAtFrame = `{ waitFlush: () => process.exit(6) }`;
    const cases = [
      row('Enter,Entre,Enter', APPLICATION + START, 1, unknown),
      row(keys, 'process.exit(6)', 6, all),
      row(keys, handling(exitAtEnter), 6, `${left}wait:600000, GoBack\n`),
      row(keys, handling(exitAtFrame), 6, all),
      row(keys, handling(exitLater), 6, `${left}GoBack\n`),
      // The key that ends the application is no failure.
      row('GoBack', handling('{ press: () => process.exit(0) }'), 0, '')
    ];
    return inSequence(cases, ([pressed, source, code, errors]) =>
      play(t, folder, write, source, ['--keys', pressed]).then((result) => {
        t.deepEqual([result.code, result.stderr], [code, errors], source);
        t.ok(code !== 1 || /press Entre\nquit\n$/.test(result.stdout), result.stdout);
      })
    );
  }));

test('keys are not pressed again after a restart', (t) =>
  inFolder((folder, write) => {
    const control = path.join(folder, 'c');
    const source = `${APPLICATION}
      const isAgain = require('fs').existsSync('again');
      require('fs').writeFileSync('again', '');
      device.handlers.press = (request) => {
        if (isAgain) say('then ' + device.sequence().map((one) => one[0]));
        else device.close();
        process.exit(isAgain ? 0 : 83);
      };
      ${START}
      if (isAgain) say('again');`;
    const words = ['run', '--control', control, '--keys', 'Enter,GoBack', write('app.js', source)];
    const launcher = new Launcher(words, {}, folder);
    return launcher
      .waitFor('again')
      .then(() => launch(['press', 'Enter', '--control', control]))
      .then(() => launcher.ended)
      .then((result) => {
        t.equal(result.code, 0);
        t.ok(result.stdout.endsWith('then frame,press\n'), result.stdout);
        t.ok(/left: GoBack\n$/.test(result.stderr), result.stderr);
      });
  }));
