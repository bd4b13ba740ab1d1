'use strict';

const fs = require('fs');
const path = require('path');
const test = require('tape');
const { FakeDevice } = require('./support/fake-device');
const { row } = require('../script/support/rows');
const { inFolder, inSequence, launch, runRows } = require('./support/launcher');

/** Calls body(device, control, folder) with a device that listens at control. */
function withDevice(handlers, body) {
  return inFolder((folder) => {
    const control = path.join(folder, 'control');
    const device = new FakeDevice(handlers);
    return device
      .listen(control)
      .then(() => body(device, control, folder))
      .then((result) => device.close().then(() => result));
  });
}

/** Each flushes a frame, as an application does that answers a key. */
const lively = {
  press(request, device) {
    device.flush();
    return FakeDevice.handlers.press(request, device);
  }
};

test('each verb sends its request and prints the answer', (t) => {
  const keysJson = {
    keys: [
      { name: 'ArrowDown', code: 40, aliases: ['VK_ArrowDown'] },
      { name: 'Enter', code: 13, aliases: ['VK_Enter'] },
      { name: 'GoBack', code: 461, aliases: ['VK_GoBack'] }
    ]
  };
  const keysText =
    '  40   ArrowDown  VK_ArrowDown\n  13   Enter      VK_Enter\n  461  GoBack     VK_GoBack\n';
  const playersText =
    '  1  url  playing            3.041 of 60.000 s  x1  und fra -  0,0 1280x720     /film.mp4\n' +
    '  2  ad   failed: not found  0.000 of 0.000 s   x1  - - -      320,180 640x360  /ad.mp4\n';
  const faultsText =
    '  1  on   slow     second 2 to 10   50000 bytes per second\n' +
    '  2  off  stalled  second 12 to 20\n';
  const tunerText =
    'failed: no signal\nselected: TV Um program=2\n' +
    'signal: 3.000 Mbit/s, 99 packets, 2 gaps, 1 damaged\n' +
    '  1  Um  256 H.264, 257 AAC por  now: 12:45 Jornal\n' +
    '  2  -\n';
  const signalText =
    'lost off, errors 0.00001, delay 700, seed 3\n' +
    '  1  on   lost    second 5 to 8\n' +
    '  2  off  errors  second 10 to 20  0.001 of the bits\n';
  const cases = [
    [['state'], ['state', {}], 'running\n', { state: 'running' }],
    [['state', 'overlay'], ['state', { state: 'overlay' }], 'overlay\n', { state: 'overlay' }],
    [['keys'], ['keys', {}], keysText, keysJson],
    [['players'], ['players', {}], playersText, { players: FakeDevice.players }],
    [['halt', 'suspend', '2'], ['haltPlayer', { how: 'suspend', player: 2 }], ''],
    [['faults'], ['faults', {}], faultsText, { faults: FakeDevice.faults }],
    [['faults', 'on', '2'], ['faults', { fault: 2, on: true }], faultsText],
    [['captions'], ['captions', {}], 'Bom dia\nserra\n', { players: FakeDevice.captions }],
    [['captions', 'dia'], ['captions', { text: 'dia' }], 'Bom dia\nserra\n'],
    [['tuner'], ['tuner', {}], tunerText, { tuner: FakeDevice.tuner }],
    [['signal'], ['signal', {}], signalText, { signal: FakeDevice.signal }],
    [['signal', 'lost', 'on'], ['signal', { lost: true }], signalText],
    [['signal', 'errors', '1e-4'], ['signal', { errorRate: 1e-4 }], signalText],
    [['signal', 'delay', 'long'], ['signal', { delay: 'long' }], signalText],
    [['signal', 'off', '2'], ['signal', { fault: 2, on: false }], signalText],
    [['message', 'volume', 'très bas\n'], ['message', { name: 'volume', value: 'très bas\n' }], ''],
    [['message', '--', '--a', ''], ['message', { name: '--a', value: '' }], '']
  ];
  const runCase = (one) =>
    withDevice({}, (device, control) => {
      const words = one[0].slice(0, 1).concat(['--control', control], one[0].slice(1));
      return launch(words).then((plain) => {
        t.deepEqual([plain.code, plain.stdout, plain.stderr], [0, one[2], ''], one[0].join(' '));
        t.deepEqual(device.sequence(), [one[1]]);
        if (!one[3]) return null;
        return launch(one[0].concat('--json'), { QUIRAVENT_CONTROL: control }).then((result) =>
          t.deepEqual(JSON.parse(result.stdout), one[3])
        );
      });
    });
  return inSequence(cases, runCase);
});

test('screenshot names the file absolutely, for a device that stands elsewhere', (t) =>
  withDevice({}, (device, control, folder) =>
    launch(['screenshot', 'screen.png', '--json', `--control=${control}`], {}, folder).then(
      (result) => {
        const file = path.join(folder, 'screen.png');
        t.deepEqual(JSON.parse(result.stdout), { file, frame: 0, width: 1280, height: 720 });
        t.deepEqual(device.sequence(), [['capture', { file }]]);
        t.ok(fs.existsSync(file));
      }
    )
  ));

test('press takes keys one after the other, each after the frame of the one before', (t) =>
  withDevice(lively, (device, control) =>
    launch(['press', '--json', 'ArrowDown*2', 'playing:3000', 'Enter:700'], {
      QUIRAVENT_CONTROL: control
    }).then((result) => {
      t.deepEqual(JSON.parse(result.stdout), {
        pressed: [
          { key: 'ArrowDown', code: 40 },
          { key: 'ArrowDown', code: 40 },
          { key: 'Enter', code: 13 }
        ]
      });
      t.deepEqual(
        device.sequence().filter((one) => one[0] !== 'frame'),
        [
          ['press', { key: 'ArrowDown' }],
          ['waitFlush', { after: 0, timeout: 1000 }],
          ['press', { key: 'ArrowDown' }],
          ['waitFlush', { after: 1, timeout: 1000 }],
          ['waitPlayer', { state: 'playing', position: 3000, timeout: 60000 }],
          ['press', { key: 'Enter', hold: 700 }],
          ['waitFlush', { after: 2, timeout: 1000 }]
        ]
      );
    })
  ));

test('an application that draws nothing for a key gets the next one all the same', (t) => {
  const still = { waitFlush: () => Promise.reject(new Error('no frame came in time')) };
  return withDevice(still, (device, control) =>
    launch(['press', '--control', control, 'Enter', '13', 'GoBack']).then((result) => {
      t.deepEqual([result.code, result.stderr], [1, "quiravent: unknown key '13'\n"]);
      const pressed = device.requests.filter((one) => one.command === 'press');
      const keys = pressed.map((one) => one.key).join();
      t.equal(keys, 'Enter,13', 'an error answer ends the sequence');
    })
  );
});

test('an answer may come in pieces, one that is none is told in one line', (t) => {
  const answering = (answer) => ({ state: (request, device, socket) => answer(socket, request) });
  const saying = (text) => answering((socket) => socket.write(text) && null);
  const silent = answering(() => null);
  const leaving = answering((socket) => socket.end() && null);
  const inPieces = answering((socket, request) => {
    const bytes = Buffer.from(`{"id":${request.id},"ok":true,"state":"päused"}\n`);
    const withinCharacter = bytes.indexOf('ä') + 1;
    socket.write(bytes.slice(0, withinCharacter));
    setTimeout(() => socket.write(bytes.slice(withinCharacter)), 100);
    return null;
  });
  const told = (error) => new RegExp(`^quiravent: the device at .*${error}\n$`);
  const cases = [
    row(inPieces, [], 0, 'päused\n', ''),
    row(silent, ['--timeout', '.2'], 1, '', told("didn't answer 'state' in 200 ms")),
    row(leaving, [], 1, '', told('is gone: it closed the connection')),
    row(saying('{\n'), [], 1, '', told('answered "{", out of turn')),
    row(saying('{"id":77,"ok":true}\n'), [], 1, '', told('out of turn')),
    row(saying('null\n'), [], 1, '', told('answered "null", out of turn'))
  ];
  return inSequence(cases, ([handlers, options, code, stdout, stderr]) =>
    withDevice(handlers, (device, control) => {
      const words = ['state', '--control', control].concat(options);
      return runRows(t, [row(words, code, stdout, stderr)]);
    })
  );
});

test('a path without a device is told with the reason', (t) =>
  inFolder((folder, write) => {
    const told = (control, reason) => {
      const line = `quiravent: no device answers at '${control}': ${reason}\n`;
      return row(['keys', '--control', control], 1, '', line);
    };
    return runRows(t, [
      told(
        path.join(folder, 'none'),
        'there is no such socket; is a device running with --control?'
      ),
      told(write('file', ''), 'nobody listens there; the device has ended, or it is no socket')
    ]);
  }));
