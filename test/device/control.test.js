'use strict';

// An application on the desktop device, driven from outside.

const fs = require('fs');
const { execFileSync } = require('child_process');
const test = require('tape');
const keys = require('../../lib/keys');
const { staleProducts } = require('../../tools/keys');
const { modulePath } = require('../script/support/build');
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
  const application = new Application(t, source, variables);
  return application
    .connect()
    .then((control) => application.untilListening(control))
    .then((control) => ({ application, control }));
}

/** What a later process finds in the application's store. */
function storedValue(application) {
  const script = `console.log(JSON.stringify(
    require(${JSON.stringify(modulePath)}).dataServices.getPersistent('control').getAll()))`;
  const env = Object.assign({}, process.env, { QUIRAVENT_STORAGE: application.file('store') });
  return JSON.parse(execFileSync(process.execPath, ['-e', script], { env })).key;
}

/** Runs the steps one after the other; each gets what the one before resolved with. */
function inTurn(steps) {
  return steps.reduce((promise, step) => promise.then(step), Promise.resolve());
}

test('what is made from the list of keys is as the device knows them', (t) => {
  t.deepEqual(staleProducts(), [], 'run node tools/keys.js');
  const expected = Object.keys(keys).map((name) => [name, keys[name]]);
  start(t, APPLICATION)
    .then(({ control }) => control.ask('keys'))
    .then((answer) => {
      const known = answer.keys.map((key) => [key.name, key.code]);
      t.deepEqual(known.sort(), expected.sort());
    })
    .then(() => t.end(), t.end);
});

test('keys and states reach the application in their order', (t) => {
  const ask = (control) => (step) => () => control.ask(step[0], step[1]);
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
  const keyEvents = [
    'keypress 37',
    'keyrelease 37',
    'keypress 403',
    'keyrelease 403',
    'keypress 40',
    'keypress 40',
    'keypress 40',
    'keyrelease 40',
    'keypress 9999',
    'keyrelease 9999',
    'keypress 457',
    'keyrelease 457',
    'keyrelease 2'
  ];
  const stateEvents = ['runtimestatechange overlay', 'runtimestatechange low_profile'];
  const isState = (line) => line.startsWith('runtimestatechange');
  start(t, APPLICATION)
    .then(({ application, control }) =>
      inTurn(steps.map(ask(control)))
        .then(() => application.until(control, keyEvents.length + stateEvents.length))
        .then((said) => {
          t.deepEqual(
            said.filter((line) => !isState(line)),
            keyEvents
          );
          t.deepEqual(said.filter(isState), stateEvents);
          return control.ask('state');
        })
        .then((answer) => t.equal(answer.state, 'low_profile'))
    )
    .then(() => t.end(), t.end);
});

test('the frame that follows a key can be waited for and looked at', (t) => {
  start(t, APPLICATION)
    .then(({ application, control }) =>
      inTurn([
        () => control.ask('frame'),
        (before) => {
          t.equal(before.frame, 0);
          return control.ask('press', { key: 'Enter' });
        },
        () => application.until(control, 2),
        () => control.ask('waitFlush', { after: 0 }),
        (shown) => {
          t.equal(shown.frame, 1);
          return control.ask('capture', { file: 'screen.png' });
        },
        (captured) => {
          t.deepEqual(captured, {
            ok: true,
            file: fs.realpathSync(application.file('screen.png')),
            frame: 1,
            width: 1280,
            height: 720
          });
          const picture = readPicture(captured.file);
          t.deepEqual(Array.from(picture.colors.keys()), ['#336699']);
          return control.ask('info');
        },
        (info) => {
          t.equal(info.pid, application.child.pid);
          t.equal(info.display, 'headless');
        }
      ])
    )
    .then(() => t.end(), t.end);
});

test('quit, exit and restart end the process in good order', (t) => {
  const cases = [
    { title: 'quit', ask: ['quit'], end: { code: null, signal: 'SIGTERM' } },
    {
      title: 'exit',
      ask: ['keyDown', { key: 'Exit' }],
      end: { code: 0, signal: null },
      stored: 'stored'
    },
    {
      title: 'restart under the launcher',
      ask: ['keyDown', { key: 'GoBack' }],
      variables: { QUIRAVENT_LAUNCHER: '1' },
      end: { code: 83, signal: null }
    }
  ];
  const run = (each) => () => {
    const variables = Object.assign({ QUIRAVENT_SCREENSHOT: 'end.png' }, each.variables);
    return start(t, APPLICATION, variables).then(({ application, control }) => {
      control.ask(each.ask[0], each.ask[1]);
      return application.end.then((end) => {
        t.deepEqual(end, each.end, each.title);
        t.equal(
          fs.existsSync(application.file('end.png')),
          true,
          'the picture of the end is there'
        );
        t.equal(fs.existsSync(application.file('control')), false, 'the socket is gone');
        t.equal(storedValue(application), each.stored, 'what it stored');
      });
    });
  };
  inTurn(cases.map(run)).then(() => t.end(), t.end);
});

test('restart begins the same process anew, with what it was started with', (t) => {
  const source = `
    say('pid ' + process.pid + ' ' + process.env.PROBE + ' ' + process.execArgv.length);
    process.env.PROBE = 'changed';
    process.title = 'changed';
    process.chdir('/');
  `;
  start(t, source + APPLICATION, { PROBE: 'kept' })
    .then(({ application, control }) => {
      const begun = () => application.said().filter((line) => line.startsWith('pid'));
      const hasBegunAgain = () => begun().length === 2;
      control.ask('keyDown', { key: 'GoBack' });
      return new Promise((resolve) => control.socket.on('close', resolve))
        .then(() => application.connect())
        .then((again) => application.nudgeUntil(again, hasBegunAgain).then(() => again.ask('quit')))
        .then(() => application.end)
        .then(() => {
          const first = begun()[0];
          t.deepEqual(begun(), [first, first]);
          t.ok(first.indexOf(`pid ${application.child.pid} kept`) === 0, first);
        });
    })
    .then(() => t.end(), t.end);
});
