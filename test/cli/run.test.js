'use strict';

const fs = require('fs');
const net = require('net');
const path = require('path');
const test = require('tape');
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
    const cases = [
      [[], {}, { QUIRAVENT_LAUNCHER: '1', UV_THREADPOOL_SIZE: '16', QUIRAVENT_CONTROL: '' }],
      [['--headless'], {}, { QUIRAVENT_DISPLAY: 'headless' }],
      [['--window'], { QUIRAVENT_DISPLAY: 'headless' }, { QUIRAVENT_DISPLAY: 'window' }],
      [['--config', 'other.json'], {}, { QUIRAVENT_CONFIG: config }],
      [['--config=other.json'], { QUIRAVENT_CONFIG: 'x' }, { QUIRAVENT_CONFIG: config }],
      [['--control', 'c'], {}, { QUIRAVENT_CONTROL: inner('c') }],
      [[], { QUIRAVENT_CONTROL: 'e' }, { QUIRAVENT_CONTROL: inner('e') }],
      [['--storage', 'st'], {}, { QUIRAVENT_STORAGE: inner('st') }],
      [
        ['--screenshot', '%d.png'],
        {},
        { QUIRAVENT_SCREENSHOT: inner('%d.png'), QUIRAVENT_CONTROL: '' }
      ],
      [[], { UV_THREADPOOL_SIZE: '4' }, { UV_THREADPOOL_SIZE: '16' }],
      [[], { UV_THREADPOOL_SIZE: 'many' }, { UV_THREADPOOL_SIZE: '16' }],
      [[], { UV_THREADPOOL_SIZE: '64' }, { UV_THREADPOOL_SIZE: '64' }]
    ];
    return inSequence(cases, (one) =>
      reportOf(folder, one[0], one[1]).then((report) => {
        const seen = {};
        Object.keys(one[2]).forEach((name) => (seen[name] = report.environment[name]));
        t.deepEqual(seen, one[2], one[0].join(' '));
      })
    );
  }));

test('search paths are extended behind what the user put there', (t) =>
  inFolder((folder, write) => {
    write('app.js', REPORT);
    const layer = process.env.LD_LIBRARY_PATH;
    return reportOf(folder, [], { NODE_PATH: '/own' }).then((report) => {
      const build = path.resolve(__dirname, '..', '..', 'build', 'release');
      const expected = process.env.QUIRAVENT_BUILD
        ? path.resolve(process.env.QUIRAVENT_BUILD)
        : build;
      t.equal(report.environment.LD_LIBRARY_PATH, `${layer}:${expected}`);
      t.equal(report.environment.NODE_PATH.split(':')[0], '/own');
    });
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

test('settings beside the application hold, unless others are named', (t) =>
  inFolder((folder, write) => {
    write('app.js', REPORT);
    const beside = write('quiravent.config.json', '{}');
    return reportOf(folder, [])
      .then((report) => t.equal(report.environment.QUIRAVENT_CONFIG, beside))
      .then(() => reportOf(folder, [], { QUIRAVENT_CONFIG: 'mine.json' }))
      .then((report) => t.equal(report.environment.QUIRAVENT_CONFIG, 'mine.json'));
  }));

test("the exit status is the application's", (t) =>
  inFolder((folder, write) => {
    const cases = [
      ['process.exitCode = 0', 0],
      ['process.exit(7)', 7],
      ['process.exit(255)', 255],
      ['throw new Error("no")', 1],
      ['process.kill(process.pid, "SIGKILL")', 137],
      ['process.kill(process.pid, "SIGTERM"); setInterval(() => {}, 1000)', 143],
      ['process.abort()', 134]
    ];
    return inSequence(cases, (one) =>
      launch(['run', write('app.js', one[0])]).then((result) => {
        t.deepEqual([result.code, result.signal], [one[1], null], one[0]);
      })
    );
  }));

test('standard input reaches the application', (t) =>
  inFolder((folder, write) => {
    const launcher = new Launcher(['run', write('app.js', 'process.stdin.pipe(process.stdout)')]);
    launcher.child.stdin.end('a line\n');
    return launcher.ended.then((result) =>
      t.deepEqual([result.code, result.stdout], [0, 'a line\n'])
    );
  }));

/** Tells each signal, and ends when standard input does. */
const LISTENER = `
const say = (text) => require('fs').writeSync(1, text + '\\n');
['SIGINT', 'SIGTERM', 'SIGHUP', 'SIGQUIT'].forEach((name) => process.on(name, () => say(name)));
process.stdin.on('end', () => process.exit(9)).resume();
say('ready');
`;

test('a signal is handed on once, and the application decides how it ends', (t) =>
  inFolder((folder, write) =>
    inSequence(['SIGINT', 'SIGTERM', 'SIGHUP', 'SIGQUIT'], (signal) => {
      const launcher = new Launcher(['run', write('app.js', LISTENER)]);
      return launcher
        .waitFor('ready')
        .then(() => launcher.kill(signal))
        .then(() => launcher.waitFor(signal))
        .then(() => launcher.child.stdin.end())
        .then(() => launcher.ended)
        .then((result) => t.deepEqual([result.code, result.stdout], [9, `ready\n${signal}\n`]));
    })
  ));

test('an echo of the first signal is not a second one', (t) =>
  inFolder((folder, write) => {
    const launcher = new Launcher(['run', write('app.js', LISTENER)]);
    return launcher
      .waitFor('ready')
      .then(() => {
        launcher.kill('SIGINT');
        launcher.kill('SIGTERM');
      })
      .then(() => launcher.waitFor('SIG'))
      .then(() => launcher.child.stdin.end())
      .then(() => launcher.ended)
      .then((result) => {
        t.equal(result.code, 9);
        t.ok(/^ready\nSIG\w+\n$/.test(result.stdout), result.stdout);
      });
  }));

test('a second signal kills the application and what it started', (t) =>
  inFolder((folder, write) => {
    const source = `
      process.on('SIGTERM', () => {});
      const deaf = "trap '' TERM; echo ready; exec sleep 1000";
      require('child_process').spawn('sh', ['-c', deaf], { stdio: 'inherit' });`;
    const launcher = new Launcher(['run', write('app.js', source)]);
    let insist = null;
    return (
      launcher
        .waitFor('ready')
        .then(() => (insist = setInterval(() => launcher.kill('SIGTERM'), 100)))
        // Which is when the last process has closed the output that all of them share.
        .then(() => launcher.ended)
        .then((result) => {
          clearInterval(insist);
          t.equal(result.code, 137);
        })
    );
  }));

test('Ctrl-Z stops the application too', (t) =>
  inFolder((folder, write) => {
    const launcher = new Launcher([
      'run',
      write('app.js', `${LISTENER} say('pid ' + process.pid + '.');`)
    ]);
    const stateOf = (pid) => /\) (\w)/.exec(fs.readFileSync(`/proc/${pid}/stat`, 'latin1'))[1];
    const until = (pid, isStopped) =>
      new Promise((resolve) => {
        const check = () =>
          (stateOf(pid) === 'T') === isStopped ? resolve() : setTimeout(check, 5);
        check();
      });
    return launcher.waitFor('.').then(() => {
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
    const launcher = new Launcher(['run', write('app.js', `${source} console.log('ready')`)]);
    return launcher
      .waitFor('ready')
      .then(() => launcher.kill('SIGTERM'))
      .then(() => launcher.ended)
      .then((result) => t.deepEqual([result.code, result.stdout], [83, 'ready\n']));
  }));

test('--for ends the application, even without a device, with status 0', (t) => {
  const stay = 'setInterval(() => {}, 1000);';
  const cases = [
    [stay, 0, /^$/],
    [`process.on('SIGTERM', () => process.exit(143)); ${stay}`, 0, /^$/],
    [`process.on('SIGTERM', () => process.exit(3)); ${stay}`, 3, /^$/],
    [`process.on('SIGTERM', () => {}); ${stay}`, 137, /was asked to end, .* is killed\n$/]
  ];
  // Long enough for the slowest machine to have come to the handler.
  const runCase = (one) =>
    inFolder((folder, write) =>
      launch(['run', '--for', '5', write('app.js', one[0])], { TMPDIR: folder }).then((result) => {
        t.equal(result.code, one[1], one[0]);
        t.ok(one[2].test(result.stderr), result.stderr);
        t.deepEqual(fs.readdirSync(folder), ['app.js'], 'nothing is left behind');
      })
    );
  return Promise.all(cases.map(runCase));
});

test('--for and --screenshot leave an application alone that ends by itself', (t) =>
  inFolder((folder, write) =>
    launch(['run', '--for', '1000', '--screenshot', 'x.png', write('app.js', 'process.exit(4)')], {
      TMPDIR: folder
    }).then((result) => {
      t.deepEqual([result.code, result.stderr], [4, '']);
      t.deepEqual(fs.readdirSync(folder), ['app.js']);
    })
  ));

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
