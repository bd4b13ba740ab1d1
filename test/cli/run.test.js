'use strict';

const fs = require('fs');
const net = require('net');
const path = require('path');
const test = require('tape');
const { row } = require('../script/support/rows');
const { Launcher, inFolder, inSequence, launch } = require('./support/launcher');

const REPORT = `
const { loadImage } = require('quiravent').graphicServices;
console.log(JSON.stringify({
  module: typeof loadImage,
  words: process.argv.slice(2),
  runtime: process.execArgv,
  environment: process.env
}));
`;

/** What the application reports that is run with these words before it. */
function reportOf(folder, words, variables, rest) {
  const line = words.concat(path.join(folder, 'app.js'), rest || []);
  return launch(['run'].concat(line), variables, folder).then((result) => {
    if (result.code !== 0) throw new Error(result.stderr);
    return JSON.parse(result.stdout);
  });
}

test('an application anywhere gets the module, its own words and the runtime its options', (t) =>
  inFolder((folder, write) => {
    write('app.js', REPORT);
    const rest = ['--headless', '--', '-x', '', 'a b', '--help'];
    const cases = [
      [[], []],
      [['--no-warnings', '--headless'], ['--no-warnings']],
      [['--stack-trace-limit=5', '--'], ['--stack-trace-limit=5']],
      [
        ['-r', write('first.js', ''), '--expose-gc'],
        ['-r', path.join(folder, 'first.js'), '--expose-gc']
      ]
    ];
    return inSequence(cases, (one) =>
      reportOf(folder, one[0], {}, rest).then((report) => {
        t.deepEqual([report.module, report.words, report.runtime], ['function', rest, one[1]]);
      })
    );
  }));

test('options and surroundings become variables', (t) =>
  inFolder((folder, write) => {
    write('app.js', REPORT);
    const inner = (name) => path.join(folder, name);
    const config = write('other.json', '{}');
    const build = path.resolve(
      process.env.QUIRAVENT_BUILD || path.join(__dirname, '..', '..', 'build', 'release')
    );
    const layers = `${process.env.LD_LIBRARY_PATH}:${build}`;
    const cases = [
      row([], {}, { QUIRAVENT_LAUNCHER: '1', UV_THREADPOOL_SIZE: '16', QUIRAVENT_CONTROL: '' }),
      row(['--headless'], {}, { QUIRAVENT_DISPLAY: 'headless' }),
      row(['--window'], { QUIRAVENT_DISPLAY: 'headless' }, { QUIRAVENT_DISPLAY: 'window' }),
      row(['--config', 'other.json'], {}, { QUIRAVENT_CONFIG: config }),
      row(['--config=other.json'], { QUIRAVENT_CONFIG: 'x' }, { QUIRAVENT_CONFIG: config }),
      row(['--control', 'c'], {}, { QUIRAVENT_CONTROL: inner('c') }),
      row([], { QUIRAVENT_CONTROL: 'e' }, { QUIRAVENT_CONTROL: inner('e') }),
      row(['--storage', 'st'], {}, { QUIRAVENT_STORAGE: inner('st') }),
      row(
        ['--screenshot', '%d.png'],
        {},
        { QUIRAVENT_SCREENSHOT: inner('%d.png'), QUIRAVENT_CONTROL: '' }
      ),
      row([], { UV_THREADPOOL_SIZE: '4' }, { UV_THREADPOOL_SIZE: '16' }),
      row([], { UV_THREADPOOL_SIZE: 'many' }, { UV_THREADPOOL_SIZE: '16' }),
      row([], { UV_THREADPOOL_SIZE: '64' }, { UV_THREADPOOL_SIZE: '64' }),
      // Search paths are extended behind what the user put there.
      row([], {}, { LD_LIBRARY_PATH: layers }),
      row(
        [],
        { NODE_PATH: '/own' },
        { NODE_PATH: `/own:${path.resolve(__dirname, '../../cli/modules')}` }
      )
    ];
    const settings = inner('quiravent.config.json');
    // Settings beside the application hold, unless others are named.
    const beside = [
      row([], {}, { QUIRAVENT_CONFIG: settings }),
      row([], { QUIRAVENT_CONFIG: 'mine.json' }, { QUIRAVENT_CONFIG: 'mine.json' })
    ];
    const runCase = ([words, variables, expected]) =>
      reportOf(folder, words, variables).then((report) => {
        const seen = {};
        Object.keys(expected).forEach((name) => (seen[name] = report.environment[name]));
        t.deepEqual(seen, expected, words.join(' '));
      });
    return inSequence(cases, runCase)
      .then(() => write('quiravent.config.json', '{}'))
      .then(() => inSequence(beside, runCase));
  }));

test('without a layer of the user the desktop device is found, and configured', (t) =>
  inFolder((folder, write) => {
    const source = `
      const { dataServices, graphicServices } = require('quiravent');
      dataServices.getPersistent('app').set('key', 'value');
      graphicServices.getTargetCanvas().flush();`;
    const options = ['--headless', '--storage', 'store', '--screenshot', 'end.png'];
    const words = ['run'].concat(options, write('app.js', source));
    return launch(words, { LD_LIBRARY_PATH: '' }, folder).then((result) => {
      t.deepEqual([result.code, result.stderr], [0, '']);
      const picture = fs.readFileSync(path.join(folder, 'end.png'));
      t.equal(picture.toString('latin1', 1, 4), 'PNG');
      t.notEqual(fs.readdirSync(path.join(folder, 'store')).length, 0);
    });
  }));

test("the exit status is the application's", (t) =>
  inFolder((folder, write) => {
    const cases = [
      row('process.exitCode = 0', 0),
      row('process.exit(7)', 7),
      row('process.exit(255)', 255),
      row('throw new Error("no")', 1),
      row('process.kill(process.pid, "SIGKILL")', 137),
      row('process.kill(process.pid, "SIGTERM"); setInterval(() => {}, 1000)', 143),
      row('process.abort()', 134)
    ];
    return inSequence(cases, ([source, code]) =>
      launch(['run', write('app.js', source)]).then((result) => {
        t.deepEqual([result.code, result.signal], [code, null], source);
      })
    );
  }));

/** Tells each signal, and ends when standard input does. */
const LISTENER = `
function say(text) { require('fs').writeSync(1, text + '\\n'); }
['SIGINT', 'SIGTERM', 'SIGHUP', 'SIGQUIT'].forEach((name) => process.on(name, () => say(name)));
process.stdin.on('end', () => process.exit(9)).resume();
say('ready');
`;

/** Resolves with the launcher of an application that has said that it is ready. */
function begin(write, source) {
  const launcher = new Launcher(['run', write('app.js', source)]);
  return launcher.waitFor('ready').then(() => launcher);
}

test('a signal is handed on once, and the application decides how it ends', (t) =>
  inFolder((folder, write) => {
    // The second one is taken for an echo of the first.
    const cases = [['SIGINT'], ['SIGTERM'], ['SIGHUP'], ['SIGQUIT'], ['SIGINT', 'SIGTERM']];
    return inSequence(cases, (signals) =>
      begin(write, LISTENER).then((launcher) => {
        signals.forEach((signal) => launcher.kill(signal));
        return launcher
          .waitFor('SIG')
          .then(() => launcher.child.stdin.end())
          .then(() => launcher.ended)
          .then((result) => {
            t.equal(result.code, 9);
            t.ok(
              signals.some((signal) => result.stdout === `ready\n${signal}\n`),
              result.stdout
            );
          });
      })
    );
  }));

test('a second signal kills the application and what it started', (t) =>
  inFolder((folder, write) => {
    const source = `
      process.on('SIGTERM', () => {});
      const deaf = "trap '' TERM; echo ready; exec sleep 1000";
      require('child_process').spawn('sh', ['-c', deaf], { stdio: 'inherit' });`;
    return begin(write, source).then((launcher) => {
      const insist = setInterval(() => launcher.kill('SIGTERM'), 100);
      // Which is when the last process has closed the output that all of them share.
      return launcher.ended.then((result) => {
        clearInterval(insist);
        t.equal(result.code, 137);
      });
    });
  }));

test('Ctrl-Z stops the application too', (t) =>
  inFolder((folder, write) => {
    const stateOf = (pid) => /\) (\w)/.exec(fs.readFileSync(`/proc/${pid}/stat`, 'latin1'))[1];
    const until = (pid, isStopped) => {
      if ((stateOf(pid) === 'T') === isStopped) return Promise.resolve();
      return new Promise((resolve) => setTimeout(resolve, 5)).then(() => until(pid, isStopped));
    };
    return begin(write, `say('pid ' + process.pid); ${LISTENER}`).then((launcher) => {
      const pid = /pid (\d+)/.exec(launcher.output.stdout)[1];
      launcher.kill('SIGTSTP');
      return until(pid, true)
        .then(() => until(launcher.child.pid, true))
        .then(() => launcher.kill('SIGCONT'))
        .then(() => until(pid, false))
        .then(() => launcher.child.stdin.end())
        .then(() => launcher.ended)
        .then((result) => t.equal(result.code, 9));
    });
  }));

test('an application that asks for it is started again with the same words', (t) =>
  inFolder((folder, write) => {
    const source = `
      const fs = require('fs');
      fs.appendFileSync('starts', process.argv[2] + process.execArgv + '\\n');
      const starts = fs.readFileSync('starts', 'utf8').split('\\n').length - 1;
      process.exit(process.env.QUIRAVENT_LAUNCHER === '1' && starts < 3 ? 83 : 5);
    `;
    const words = ['run', '--no-warnings', write('app.js', source), 'x'];
    return launch(words, {}, folder).then((result) => {
      t.equal(result.code, 5);
      const starts = fs.readFileSync(path.join(folder, 'starts'), 'utf8');
      t.equal(starts, 'x--no-warnings\n'.repeat(3));
    });
  }));

test('an application that was asked to end is not started again', (t) =>
  inFolder((folder, write) => {
    const source = "process.on('SIGTERM', () => process.exit(83)); setInterval(() => {}, 1000);";
    return begin(write, `${source} console.log('ready')`)
      .then((launcher) => {
        launcher.kill('SIGTERM');
        return launcher.ended;
      })
      .then((result) => t.deepEqual([result.code, result.stdout], [83, 'ready\n']));
  }));

test('--for ends the application, even without a device, with status 0', (t) => {
  const stay = 'setInterval(() => {}, 1000);';
  const onEnd = (body) => `process.on('SIGTERM', () => ${body}); ${stay}`;
  // Long enough for the slowest machine to have come to the handler.
  const cases = [
    row(['--for', '5'], stay, 0, /^$/),
    row(['--for', '5'], onEnd('process.exit(143)'), 0, /^$/),
    row(['--for', '5'], onEnd('process.exit(3)'), 3, /^$/),
    row(['--for', '5'], onEnd('{}'), 137, /was asked to end, .* is killed\n$/),
    // One that ends by itself is left alone.
    row(['--for', '1000', '--screenshot', 'x.png'], 'process.exit(4)', 4, /^$/)
  ];
  const runCase = ([options, source, code, errors]) =>
    inFolder((folder, write) =>
      launch(['run'].concat(options, write('app.js', source)), { TMPDIR: folder }).then(
        (result) => {
          t.equal(result.code, code, source);
          t.ok(errors.test(result.stderr), result.stderr);
          t.deepEqual(fs.readdirSync(folder), ['app.js'], 'nothing is left behind');
        }
      )
    );
  return Promise.all(cases.map(runCase));
});

test("a killed device's socket is removed, a file in its place is not", (t) =>
  inFolder((folder, write) => {
    const kill = 'process.kill(process.pid, "SIGKILL")';
    const app = `require('net').createServer().listen(process.env.QUIRAVENT_CONTROL, () => ${kill})`;
    const words = (name) => [
      'run',
      '--control',
      path.join(folder, name),
      path.join(folder, 'app.js')
    ];
    write('app.js', app);
    write('file', 'mine');
    return launch(words('c'))
      .then((result) => t.equal(result.code, 137))
      .then(() => write('app.js', ''))
      .then(() => launch(words('file')))
      .then((result) => t.equal(result.code, 0))
      .then(() => t.deepEqual(fs.readdirSync(folder).sort(), ['app.js', 'file']));
  }));

test('a socket at which another device listens is refused', (t) =>
  inFolder((folder, write) => {
    const control = path.join(folder, 'c');
    const server = net.createServer((socket) => socket.destroy());
    return new Promise((resolve) => server.listen(control, resolve))
      .then(() => launch(['run', '--control', control, write('app.js', 'console.log("ran")')]))
      .then((result) => {
        t.deepEqual([result.code, result.stdout], [1, '']);
        t.ok(result.stderr.startsWith(`quiravent: run: another device listens at '${control}'`));
        t.ok(fs.existsSync(control));
      })
      .then(() => new Promise((resolve) => server.close(resolve)));
  }));
