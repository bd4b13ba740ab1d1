'use strict';

// The properties and what their first fetching starts: state changes and the service selector
// channel. The channel's pipe is one for the whole machine, and whoever has it open may read what a
// test writes. So nothing else fetches properties, and what is tested in a process of its own comes
// before this one does it.

const fs = require('fs');
const path = require('path');
const { spawn } = require('child_process');
const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { openInput, endAll } = require('./support/workers');
const { isAsleep, poll, quiet, turn, threadNames } = require('./support/threads');
const { runtime } = require('./support/build');
const { load } = require('./support/pace');
const { runScript, says } = require('./support/process');

const services = quiravent.platformServices;
const PIPE = '/tmp/quiravent-serviceselector';
const INIT = 'pl_platform_InitProperties';
const ON_STATE = 'pl_platform_SetCallback_RuntimeStateChange';
const GET_STATE = 'pl_platform_GetRuntimeState';
const SET_STATE = 'pl_platform_SetRuntimeState';

test('without properties, each fetching starts anew', (t) => {
  // [answer to the first call and to the second], then a list that isn't empty
  const source = `
    const services = quiravent.platformServices;
    const channels = () => support('threads').threadNames().filter((name) => name === 'messageIPC');
    const say1 = (value) => say(JSON.stringify(value) + ' ');
    recorder.clear();
    const answers = [{}, { status: 3 }, { outputs: { properties: [['a', '1']] } }, {}];
    answers.forEach((answer) => {
      recorder.once('${INIT}', answer);
      say1([services.initProperties(), recorder.sequence().length]);
    });
    support('threads').quiet().then(() => {
      say1(channels().length);
      process.exit(0);
    });`;
  return says(t, source, '[{},2] [{},4] [{"a":"1"},6] [{"a":"1"},6] 3 ');
});

test('exit waits until a byte reaches the pipe, which stays unread', (t) => {
  const source = `
    const services = quiravent.platformServices;
    recorder.once('${INIT}', { outputs: { properties: [['a', '1']] } });
    services.initProperties();
    const input = support('workers').openInput();
    input.flush().then(support('threads').quiet).then(() => {
      recorder.clear();
      recorder.echo();
      say('leaving\\n');
      say('left ' + services.exit() + '\\n');
      return input.flush();
    }).then((events) => {
      say(JSON.stringify([events, recorder.sequence()]) + '\\n');
      const names = support('threads').threadNames();
      say(String(names.indexOf('messageIPC') < 0) + '\\n');
      process.exit(0);
    });`;
  let latest = '';
  let outputBefore = null;
  let unread = null;
  let writer = -1;
  const watch = (output, child) => {
    latest = output;
    if (output === 'leaving\n' && writer < 0) {
      writer = fs.openSync(PIPE, fs.constants.O_WRONLY | fs.constants.O_NONBLOCK);
      // Its script thread then waits; the first of its threads bears its number.
      poll(() => isAsleep(`/proc/${child.pid}`))
        .then(turn)
        .then(() => {
          outputBefore = latest;
          fs.writeSync(writer, 'a\nb\n');
        })
        .catch((error) => t.fail(error.message));
    } else if (/left/.test(output) && unread === null) unread = recorder.unread(writer);
  };
  return runScript(source, watch).then((result) => {
    fs.closeSync(writer);
    t.equal(result.code, 0, result.stderr);
    t.equal(outputBefore, 'leaving\n', 'before the byte came');
    t.equal(
      result.stdout,
      'leaving\npl_platform_Exit\nleft undefined\n[[],[["pl_platform_Exit"]]]\ntrue\n'
    );
    t.equal(unread, 4);
  });
});

test('the channel ends when its pipe is closed under it', (t) => {
  const source = `
    const fs = require('fs');
    const services = quiravent.platformServices;
    const threads = support('threads');
    const isPipe = (file) => fs.existsSync(file) && fs.readlinkSync(file) === '${PIPE}';
    recorder.once('${INIT}', { outputs: { properties: [['a', '1']] } });
    services.initProperties();
    threads.quiet().then(() => {
      const names = fs.readdirSync('/proc/self/fd');
      const descriptor = Number(names.find((name) => isPipe('/proc/self/fd/' + name)));
      const writer = fs.openSync('${PIPE}', 'w');
      fs.closeSync(descriptor);
      fs.writeSync(writer, 'a\\nb\\n');
      return threads.poll(() => threads.threadNames().indexOf('messageIPC') < 0);
    }).then(() => {
      services.exit();
      say('left');
      process.exit(0);
    });`;
  return says(t, source, 'left');
});

test('a state change without an input worker is dropped, and not kept', (t) => {
  const source = `
    recorder.once('${INIT}', { outputs: { properties: [['a', '1']] } });
    quiravent.platformServices.initProperties();
    const change = (state) => recorder.event('runtimeState', state);
    let input = null;
    recorder.fire([change(0), change(3)]).then((count) => {
      say(count + ' ');
      input = support('workers').openInput();
      return input.report([change(4)]);
    }).then((events) => {
      say(JSON.stringify(events));
      process.exit(0);
    });`;
  return says(t, source, '2 [["runtimestatechange","suspended"]]');
});

// From here on this process serves the pipe.

const PROPERTIES = [
  ['b', 'two'],
  ['a', 'one'],
  ['system.gfx_cleanup_from_app', 'false'],
  ['b', 'later'],
  ['Z', ''],
  ['ä', 'Grün 日'],
  ['n', '5'],
  ['', 'empty']
];

test('initProperties fetches, registers and starts the channel, once', (t) => {
  recorder.reset();
  recorder.once(INIT, { status: 7, outputs: { properties: PROPERTIES } });
  const first = services.initProperties(1, 2);
  const expected = {
    '': 'empty',
    Z: '',
    a: 'one',
    b: 'later',
    n: '5',
    'system.gfx_cleanup_from_app': 'false',
    ä: 'Grün 日'
  };
  t.deepEqual(first, expected);
  t.deepEqual(Object.keys(first), Object.keys(expected), 'in the order of keys');
  t.equal(Object.getPrototypeOf(first), Object.prototype);
  t.deepEqual(recorder.sequence(), [
    [INIT, 'out'],
    [ON_STATE, 'function']
  ]);
  t.ok(recorder.calls().every((call) => call.thread === 'script'));
  first.a = 'changed';
  delete first.b;
  const second = services.initProperties();
  t.notEqual(first, second);
  t.deepEqual(second, expected);
  t.equal(recorder.calls().length, 2);
  return quiet().then(() => {
    t.equal(threadNames().filter((name) => name === 'messageIPC').length, 1);
    t.ok(fs.statSync(PIPE).isFIFO());
  });
});

test('graphics are as they are without the property', (t) => {
  const canvas = quiravent.graphicServices.createCanvas(2, 2);
  recorder.clear();
  quiravent.graphicServices.cleanUp();
  canvas.fillRect(1, 1, 1, 1);
  t.deepEqual(
    recorder.calls().map((call) => call.fn),
    ['pl_gfx_Canvas_FillRect']
  );
  canvas.release();
  t.end();
});

const NONBLOCKING = fs.constants.O_RDWR | fs.constants.O_NONBLOCK;
let pipe = -1;

/** Resolves once the pipe is empty: what was written has been taken. */
const taken = () => poll(() => recorder.unread(pipe) === 0);

/** Writes bytes at once, as a message apart from all others. */
function send(bytes) {
  if (pipe < 0) pipe = fs.openSync(PIPE, NONBLOCKING);
  const buffer = Buffer.from(bytes);
  return taken().then(() => {
    if (fs.writeSync(pipe, buffer, 0, buffer.length) !== buffer.length) throw new Error('cut');
    return taken().then(quiet);
  });
}

test('a message without an input worker is dropped whole', (t) => {
  recorder.reset();
  recorder.always(GET_STATE, { outputs: { state: 3 } });
  let late = null;
  return send('serviceunselect\nhome\n')
    .then(() => send('volume\nlow\n'))
    .then(() => {
      t.deepEqual(recorder.calls(), []);
      late = openInput();
      return late.flush();
    })
    .then((events) => {
      t.deepEqual(events, []);
      return endAll([late]);
    });
});

let input = null;

test('from now on there is a worker to hear', (t) => {
  input = openInput();
  return input.flush().then((events) => t.deepEqual(events, []));
});

/** Sends messages, each apart; resolves with all events heard of them. */
function heardOf(messages) {
  return inSequence(messages, send).then(() => input.flush());
}

const a = (count) => 'a'.repeat(count);

// [what it shows, message, events heard]
const MESSAGES = [
  ['a name and a value', 'volume\nlow\n', [['volume', 'low']]],
  ['no line feed at the end', 'volume\nlow', [['volume', 'low']]],
  ['several line feeds between', 'volume\n\n\nlow\n', [['volume', 'low']]],
  ['line feeds before', '\n\nvolume\nlow\n', [['volume', 'low']]],
  ['line feeds after', 'volume\nlow\n\n\n', [['volume', 'low']]],
  ['a rest is ignored', 'volume\nlow\nhome\nx\ny\n', [['volume', 'low']]],
  ['blanks are kept', ' my volume \n very low \n', [[' my volume ', ' very low ']]],
  ['a carriage return is a byte like any other', 'a\r\nb\r\n', [['a\r', 'b\r']]],
  ['so is a tab', '\t\n\t\n', [['\t', '\t']]],
  ['UTF-8', 'ключ\n日本😀\n', [['ключ', '日本😀']]],
  ['a name alone', 'volume\n', []],
  ['a name alone, with more line feeds', '\nvolume\n\n', []],
  ['a name without a line feed', 'volume', []],
  ['line feeds alone', '\n\n\n', []],
  ['a NUL first', '\0volume\nlow\n', []],
  ['a NUL after a line feed', '\n\0volume\nlow\n', []],
  ['a NUL in the name', 'vol\0ume\nlow\n', []],
  ['a NUL after the name', 'volume\0\nlow\n', []],
  ['a NUL in the place of the value', 'volume\n\0low\n', []],
  ['a NUL in the value', 'volume\nlow\0er\n', [['volume', 'low']]],
  ['a full message', `n\n${a(1022)}`, [['n', a(1022)]]],
  ['a full message of one byte less', `n\n${a(1021)}`, [['n', a(1021)]]],
  ['a full name', `${a(1022)}\nv`, [[a(1022), 'v']]],
  ['a full message without a line feed', a(1024), []],
  [
    'what is longer is cut, and the remains are the next message',
    `n\n${a(1022)}b\nc\n`,
    [
      ['n', a(1022)],
      ['b', 'c']
    ]
  ],
  ['the cut may leave a name alone', `n\n${a(1022)}bc`, [['n', a(1022)]]],
  ['not the special name', 'Serviceunselect\nhome\n', [['Serviceunselect', 'home']]],
  ['nor this', 'serviceunselected\nhome\n', [['serviceunselected', 'home']]]
];

MESSAGES.forEach((row) => {
  test(`message: ${row[0]}`, (t) => {
    recorder.reset();
    const before = input.events().length;
    return heardOf([row[1]]).then((events) => {
      t.deepEqual(events.slice(before), row[2]);
      t.deepEqual(recorder.calls(), [], 'no state is asked for or set');
    });
  });
});

// [state, status of the question, whether the background is asked for]
const UNSELECTED = [
  [3, 0, true],
  [3, 5, true],
  [3, 65535, true],
  [5, 0, false],
  [0, 0, false],
  [1, 0, false],
  [2, 0, false],
  [4, 0, false],
  [6, 0, false]
];

test('serviceunselect leaves the overlay state, and is heard in any', (t) => {
  const check = (row) => {
    recorder.reset();
    recorder.once(GET_STATE, { status: row[1], outputs: { state: row[0] } });
    recorder.once(SET_STATE, { status: 9 });
    const before = input.events().length;
    return heardOf(['serviceunselect\nhome\n']).then((events) => {
      t.deepEqual(events.slice(before), [['serviceunselect', 'home']], row.join());
      const asked = row[2] ? [[SET_STATE, 2]] : [];
      t.deepEqual(recorder.sequence(), [[GET_STATE, 'out']].concat(asked));
      t.ok(recorder.calls().every((call) => call.thread === 'messageIPC'));
    });
  };
  return inSequence(UNSELECTED, check);
});

test('serviceunselect without a value changes nothing', (t) => {
  recorder.reset();
  const before = input.events().length;
  return heardOf(['serviceunselect\n', 'serviceunselect']).then((events) => {
    t.deepEqual(events.slice(before), []);
    t.deepEqual(recorder.calls(), []);
  });
});

test('the state is left first, and the messages of meanwhile are one', (t) => {
  recorder.reset();
  const before = input.events().length;
  const held = recorder.hold(GET_STATE, { outputs: { state: 3 } });
  const since = () => input.events().slice(before);
  return send('serviceunselect\nhome\n')
    .then(() => held.blocked())
    .then(() => input.flush())
    .then(() => {
      t.deepEqual(since(), [], 'not heard yet');
      fs.writeSync(pipe, 'one\n1\n');
      fs.writeSync(pipe, 'two\n2\n');
      held.open();
      return taken();
    })
    .then(() => input.flush())
    .then(() => {
      t.deepEqual(since(), [
        ['serviceunselect', 'home'],
        ['one', '1']
      ]);
    });
});

test('state changes are heard by name, in order with keys and messages', (t) => {
  recorder.reset();
  const before = input.events().length;
  const change = (state) => recorder.event('runtimeState', state);
  const press = (code) => recorder.event('keyPress', code);
  return recorder
    .fire([0, 1, 2, 3, 4, 5, 6, 4294967295, 1, 1].map(change).concat(press(40)))
    .then(() => send('volume\nlow\n'))
    .then(() => recorder.fire([press(41), change(3), recorder.event('keyRelease', 41)]))
    .then(() => input.flush())
    .then((events) => {
      const states = (
        'paused running low_profile overlay suspended advertising unknown unknown ' +
        'running running'
      ).split(' ');
      t.deepEqual(
        events.slice(before),
        states
          .map((state) => ['runtimestatechange', state])
          .concat([
            ['keypress', '40'],
            ['volume', 'low'],
            ['keypress', '41'],
            ['runtimestatechange', 'overlay'],
            ['keyrelease', '41']
          ])
      );
      t.deepEqual(recorder.calls(), []);
    });
});

// Random messages: 1 to 5000 bytes of any value, one in four without a line feed.
const WRITER = path.join(__dirname, 'support', 'random-writer.js');
const WRITERS = 3;
const MESSAGES_EACH = load(2500);
const { writeRandomMessages } = require(WRITER);

/** Resolves once a process of its own has written its random messages. */
function runWriter(seed) {
  return new Promise((resolve, reject) => {
    const args = [WRITER, PIPE, String(seed), String(MESSAGES_EACH)];
    spawn(runtime, args, { stdio: 'inherit' }).on('error', reject).on('exit', resolve);
  });
}

test('many random messages do no harm', (t) => {
  recorder.reset();
  const writers = [writeRandomMessages(pipe, 1, MESSAGES_EACH)];
  for (let seed = 2; seed <= WRITERS + 1; seed += 1) writers.push(runWriter(seed));
  return Promise.all(writers)
    .then((codes) => {
      t.deepEqual(codes.slice(1), [0, 0, 0]);
      return taken();
    })
    .then(() => input.flush())
    .then((events) => {
      const before = events.length;
      t.ok(before > 100, 'some happened to be well formed');
      const sent = [];
      for (let index = 0; index < 20; index += 1) sent.push([`name ${index}`, `value ${index}`]);
      const texts = sent.map((each) => `${each[0]}\n${each[1]}\n`);
      return heardOf(texts).then((all) => t.deepEqual(all.slice(before), sent));
    })
    .then(() => endAll([input]));
});

test('after the end', (t) => {
  fs.closeSync(pipe);
  t.ok(fs.statSync(PIPE).isFIFO(), 'the pipe stays');
  const names = threadNames();
  t.ok(names.indexOf('messageIPC') >= 0, 'and its thread, without keeping the process');
  t.end();
});
