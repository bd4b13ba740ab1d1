'use strict';

// An application on the desktop device, driven from outside.

const fs = require('fs');
const { execFileSync } = require('child_process');
const test = require('tape');
const keys = require('../../lib/keys');
const { staleProducts } = require('../../tools/keys');
const { inSequence } = require('../lib/concurrently');
const { modulePath } = require('../script/support/build');
const { row } = require('../script/support/rows');
const { Application } = require('./support/controlled');
const { readPicture } = require('./support/png');

/** Says each event, and does what some keys ask for. */
const APPLICATION = `
const screen = quiravent.graphicServices.getTargetCanvas();
const store = quiravent.dataServices.getPersistent('control');
const actions = {
  'keypress 13': () => {
    screen.setColor('#336699');
    screen.fillRect(0, 0, 1280, 720);
    screen.flush();
  },
  'keypress 27': () => {
    store.set('key', 'stored');
    platformServices.exit();
  },
  'keypress 461': () => platformServices.restart()
};
function onEvent(name, data) {
  const event = name + ' ' + data;
  say(event);
  if (actions[event]) actions[event]();
}
new quiravent.InputWorker(onEvent, () => {}, () => {});
platformServices.initProperties();
`;

function start(t, source, variables) {
  return new Application(t, source, variables).connect().then((made) => made.untilListening());
}

/** What a later process finds in the application's store. */
function storedValue(application) {
  const script = `console.log(JSON.stringify(
    require(${JSON.stringify(modulePath)}).dataServices.getPersistent('control').getAll()))`;
  const env = Object.assign({}, process.env, { QUIRAVENT_STORAGE: application.file('store') });
  return JSON.parse(execFileSync(process.execPath, ['-e', script], { env })).key;
}

test('what is made from the list of keys is as the device knows them', (t) => {
  t.deepEqual(staleProducts(), [], 'run node tools/keys.js');
  const expected = Object.keys(keys).map((name) => [name, keys[name]]);
  return start(t, APPLICATION)
    .then((application) => application.ask('keys'))
    .then((answer) => {
      const known = answer.keys.map((key) => [key.name, key.code]);
      t.deepEqual(known.sort(), expected.sort());
    });
});

test('keys and states reach the application in their order', (t) => {
  const steps = [
    ['press', { key: 'ArrowLeft' }],
    ['press', { key: 'vk_red' }],
    ['press', { key: 'KEY_DOWN', hold: 650 }],
    ['press', { key: 9999 }],
    ['keyDown', { key: 'Info' }],
    ['state', { state: 'overlay' }],
    ['keyUp', { key: '457' }],
    ['press', { key: 'Home' }]
  ];
  const keyEvents =
    'keypress 37, keyrelease 37, keypress 403, keyrelease 403, keypress 40, keypress 40, ' +
    'keypress 40, keyrelease 40, keypress 9999, keyrelease 9999, keypress 457, keyrelease 457, ' +
    'keyrelease 2';
  const stateEvents = ['runtimestatechange overlay', 'runtimestatechange low_profile'];
  const isState = (line) => line.startsWith('runtimestatechange');
  return start(t, APPLICATION).then((application) =>
    inSequence(steps, (step) => application.ask(step[0], step[1]))
      .then(() => application.until(keyEvents.split(', ').length + stateEvents.length))
      .then((said) => {
        t.equal(said.filter((line) => !isState(line)).join(', '), keyEvents);
        t.deepEqual(said.filter(isState), stateEvents);
        return application.ask('state');
      })
      .then((answer) => t.equal(answer.state, 'low_profile'))
  );
});

test('the frame that follows a key can be waited for and looked at', (t) =>
  start(t, APPLICATION).then((application) =>
    application
      .ask('frame')
      .then((before) => t.equal(before.frame, 0))
      .then(() => application.ask('press', { key: 'Enter' }))
      .then(() => application.until(2))
      .then(() => application.ask('waitFlush', { after: 0 }))
      .then((shown) => t.equal(shown.frame, 1))
      .then(() => application.ask('capture', { file: 'screen.png' }))
      .then((captured) => {
        const file = fs.realpathSync(application.file('screen.png'));
        t.deepEqual(captured, { ok: true, file, frame: 1, width: 1280, height: 720 });
        t.deepEqual(Array.from(readPicture(file).colors.keys()), ['#336699']);
        return application.ask('info');
      })
      .then((info) => t.deepEqual([info.pid, info.display], [application.child.pid, 'headless']))
  ));

test('quit, exit and restart end the process in good order', (t) => {
  const key = (name) => ['keyDown', { key: name }];
  const launched = { QUIRAVENT_LAUNCHER: '1' };
  // Command and parameters, variables, how the process ends, what it stored.
  const cases = [
    row(['quit'], {}, { code: null, signal: 'SIGTERM' }, undefined),
    row(key('Exit'), {}, { code: 0, signal: null }, 'stored'),
    row(key('GoBack'), launched, { code: 83, signal: null }, undefined)
  ];
  return inSequence(cases, ([command, variables, expected, stored]) =>
    start(t, APPLICATION, Object.assign({ QUIRAVENT_SCREENSHOT: 'end.png' }, variables)).then(
      (application) => {
        application.ask(command[0], command[1]);
        return application.end.then((end) => {
          t.deepEqual(end, expected, JSON.stringify(command));
          t.ok(fs.existsSync(application.file('end.png')), 'the picture of the end is there');
          t.notOk(fs.existsSync(application.file('control')), 'the socket is gone');
          t.equal(storedValue(application), stored, 'what it stored');
        });
      }
    )
  );
});

test('restart begins the same process anew, with what it was started with', (t) => {
  const source = `
    say('pid ' + process.pid + ' ' + process.env.PROBE + ' ' + process.execArgv.length);
    process.env.PROBE = 'changed';
    process.title = 'changed';
    process.chdir('/');
  `;
  return start(t, source + APPLICATION, { PROBE: 'kept' }).then((application) => {
    const begun = () => application.said().filter((line) => line.startsWith('pid'));
    const { socket } = application.control;
    application.ask('keyDown', { key: 'GoBack' });
    return new Promise((resolve) => socket.on('close', resolve))
      .then(() => application.connect())
      .then(() => application.nudgeUntil(() => begun().length === 2))
      .then(() => application.ask('quit'))
      .then(() => application.end)
      .then(() => {
        const first = begun()[0];
        t.deepEqual(begun(), [first, first]);
        t.ok(first.indexOf(`pid ${application.child.pid} kept`) === 0, first);
      });
  });
});
