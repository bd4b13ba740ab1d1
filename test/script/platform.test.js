'use strict';

// Everything but the properties, and with them the state changes, which service-selector.test.js
// tests: whoever asks for them serves the one pipe of the machine.

const path = require('path');
const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { buildFolder } = require('./support/build');
const { runScript, says } = require('./support/process');

const services = quiravent.platformServices;

/** What a function throws: [class, message]; null if it throws nothing. */
function thrownBy(call) {
  try {
    call();
  } catch (error) {
    return [error.constructor, error.message];
  }
  return null;
}

// [how the porting layer answers, the state as text]
const STATES = [
  [{ outputs: { state: 0 } }, 'paused'],
  [{ outputs: { state: 1 } }, 'running'],
  [{ outputs: { state: 2 } }, 'low_profile'],
  [{ outputs: { state: 3 } }, 'overlay'],
  [{ outputs: { state: 4 } }, 'suspended'],
  [{ outputs: { state: 5 } }, 'advertising'],
  [{ outputs: { state: 6 } }, 'unknown'],
  [{ outputs: { state: 4294967295 } }, 'unknown'],
  [{ status: 65535, outputs: { state: 3 } }, 'running'],
  [{ status: 65535, outputs: { state: 9 } }, 'running'],
  [{ status: 65534, outputs: { state: 3 } }, 'unknown'],
  [{ status: -1, outputs: { state: 3 } }, 'unknown'],
  [{ status: 1, outputs: { state: null } }, 'unknown']
];

test('getRuntimeState names the state', (t) => {
  STATES.forEach((row) => {
    recorder.reset();
    recorder.once('pl_platform_GetRuntimeState', row[0]);
    t.equal(services.getRuntimeState(5, 6), row[1], JSON.stringify(row[0]));
    t.deepEqual(recorder.sequence(), [['pl_platform_GetRuntimeState', 'out']]);
    t.equal(recorder.calls()[0].thread, 'script');
  });
  t.end();
});

test('setRuntimeState asks for a state that it knows', (t) => {
  ['paused', 'running', 'low_profile', 'overlay', 'suspended', 'advertising'].forEach(
    (name, code) => {
      [0, 7].forEach((status) => {
        recorder.reset();
        recorder.once('pl_platform_SetRuntimeState', { status });
        t.equal(services.setRuntimeState(name, 'more'), true, 'whether or not the device obeys');
        t.deepEqual(recorder.sequence(), [['pl_platform_SetRuntimeState', code]]);
        t.equal(recorder.calls()[0].thread, 'script');
      });
    }
  );
  t.end();
});

test('setRuntimeState gives false for any other text', (t) => {
  recorder.reset();
  ['unknown', 'Running', '', 'running ', ' running', 'low profile', '1', 'runnin'].forEach(
    (name) => {
      t.equal(services.setRuntimeState(name), false, name);
    }
  );
  t.deepEqual(recorder.calls(), []);
  t.end();
});

// [function, arguments, text]
const BAD_ARGUMENTS = [];
[[], [undefined], [null], [1], [true], [{}], [new String('running')]].forEach((args) => {
  const text = "setRuntimeState() error. Expected 'state' string";
  BAD_ARGUMENTS.push(['setRuntimeState', args, text]);
});
[[], [undefined], [null], [0], [1], ['true'], [{}], [new Boolean(true)]].forEach((args) => {
  BAD_ARGUMENTS.push(['toggleLiveDTV', args, 'toggleLiveDTV() error. Expected boolean']);
});

test('a wrong argument is a TypeError, and reaches nothing', (t) => {
  recorder.reset();
  BAD_ARGUMENTS.forEach((row) => {
    const thrown = thrownBy(() => services[row[0]].apply(services, row[1]));
    t.deepEqual(thrown, [TypeError, row[2]], JSON.stringify(row));
  });
  t.deepEqual(recorder.calls(), []);
  t.end();
});

test('live television is switched and told', (t) => {
  [true, false].forEach((on) => {
    [0, 3].forEach((status) => {
      recorder.reset();
      recorder.once('pl_platform_ToggleLiveDTV', { status });
      t.equal(services.toggleLiveDTV(on), undefined);
      t.deepEqual(recorder.sequence(), [['pl_platform_ToggleLiveDTV', on]]);
    });
  });
  // [byte that the device writes, status, result]
  const bytes = [
    [0, 0, false],
    [1, 0, true],
    [2, 0, true],
    [255, 0, true],
    [1, 4, true],
    [0, 4, false]
  ];
  bytes.forEach((row) => {
    recorder.reset();
    recorder.once('pl_platform_GetLiveDTVStatus', { status: row[1], outputs: { on: row[0] } });
    t.equal(services.getLiveDTVStatus(true), row[2], row.join());
    t.deepEqual(recorder.sequence(), [['pl_platform_GetLiveDTVStatus', 'out']]);
  });
  t.end();
});

test('restart tells whether the porting layer gave 0', (t) => {
  [
    [0, true],
    [1, false],
    [-1, false],
    [65535, false]
  ].forEach((row) => {
    recorder.reset();
    recorder.once('pl_platform_Restart', { status: row[0] });
    t.equal(services.restart(), row[1]);
    t.deepEqual(recorder.sequence(), [['pl_platform_Restart']]);
  });
  t.end();
});

test('a porting layer may lack what enableDTVEvents calls, as long as it isn’t called', (t) => {
  const source = `
    quiravent.graphicServices.getTargetCanvas().fillRect(1, 2, 3, 4);
    say(recorder.argsOf('pl_gfx_Canvas_FillRect').length + ' ');
    quiravent.platformServices.enableDTVEvents();
    say('returned');`;
  const library = path.join(buildFolder, 'recorder', 'without-events');
  return runScript(source, null, { LD_LIBRARY_PATH: library }).then((result) => {
    t.equal(result.stdout, '1 ', 'the module works');
    t.equal(result.code, 127, 'the call is the end');
    t.ok(
      /symbol lookup error: .*quiravent\.node: .*EnableDTVEvents/.test(result.stderr),
      result.stderr
    );
  });
});

test('enableDTVEvents is the porting layer’s', (t) => {
  recorder.reset();
  t.equal(services.enableDTVEvents(1, 2), undefined);
  t.deepEqual(recorder.sequence(), [['PlatformServices::EnableDTVEvents']]);
  t.equal(recorder.calls()[0].thread, 'script');
  t.end();
});

// [argument as source, timestamp]
const TIMESTAMPS = [
  ['1234567890', 1234567890],
  ['0', 0],
  ['4294967295', 4294967295],
  ['4294967296', 0],
  ['-1', 4294967295],
  ['1.5', 1],
  ['null', 0],
  ['"17"', 17],
  ['"soon"', 0],
  ['true', 1],
  ['{}', 0],
  ['NaN', 0]
];

const traceOf = (timestamp) =>
  `[PlatformServicesWrapper] SetReferenceDate(timestamp = ${timestamp})\n`;

test('setReferenceDate traces and passes on what it is given', (t) => {
  const source = `
    recorder.clear();
    recorder.echo();
    const given = [${TIMESTAMPS.map((row) => row[0]).join()}];
    const results = given.map((each) => quiravent.platformServices.setReferenceDate(each, 1));
    say(JSON.stringify([results.every((each) => each === undefined), recorder.sequence()]));`;
  const fn = 'pl_platform_SetReferenceDate';
  const told = TIMESTAMPS.map((row) => `${traceOf(row[1])}${fn}\n`);
  const sequence = TIMESTAMPS.map((row) => [fn, row[1]]);
  return says(t, source, told.join('') + JSON.stringify([true, sequence]));
});

['', 'undefined'].forEach((argument) => {
  test(`setReferenceDate(${argument}) carries on, and throws in the end`, (t) => {
    const source = `
      recorder.clear();
      recorder.echo();
      try {
        quiravent.platformServices.setReferenceDate(${argument});
        say('went on');
      } catch (error) {
        say([error.constructor === TypeError, error.message, recorder.calls()[0].args].join());
      }`;
    const text = "setReferenceDate() error. Expected 'timestamp' uint32_t";
    return says(t, source, `${traceOf(0)}pl_platform_SetReferenceDate\ntrue,${text},0`);
  });
});

test('without a channel, exit leaves at once', (t) => {
  const source = `
    recorder.clear();
    say(String(quiravent.platformServices.exit(1)));
    say(JSON.stringify(recorder.sequence()));`;
  return says(t, source, 'undefined[["pl_platform_Exit"]]');
});
