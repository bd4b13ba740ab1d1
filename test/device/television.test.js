'use strict';

// Television as an application receives it: the real module on the desktop device, which tunes a
// file as if it came over the air.

const fs = require('fs');
const path = require('path');
const test = require('tape');
const { Application } = require('./support/controlled');
const { newFolder } = require('./support/files');
const { makeMultiplex, readMark } = require('./support/multiplexes');
const { readPicture } = require('./support/png');

const folder = newFolder({ teardown: test.onFinish });
const multiplex = makeMultiplex(folder);

const SCREEN = { x: 0, y: 0, w: 1280, h: 720 };

/** What every application here begins with; commands come as keys: see play(). */
const BEGIN = `
const { tunerServices } = quiravent;
const screen = quiravent.graphicServices.getTargetCanvas();
screen.clearRect(0, 0, 1280, 720);
screen.flush();
const tune = (selector) => new quiravent.TunerWorker(selector, '',
  (name, data) => say(name + ' ' + data), () => say('untuned'), say);
const play = (video, audio, clock) => {
  const player = tunerServices.getPlayer(video, audio, clock);
  if (player) player.start();
  return player;
};
const onKeys = (actions) => new quiravent.InputWorker((name, code) => {
  say(name + ' ' + code);
  if (name === 'keypress' && actions[code]) actions[code]();
}, () => {}, say);
`;

const sound = { QUIRAVENT_AUDIO: 'null', UV_THREADPOOL_SIZE: '8' };

/**
 * Starts an application in which `file` is known, takes steps(app) once its device is there, and ends
 * it; resolves with the application.
 */
function run(t, source, steps, variables) {
  const begin = `${BEGIN}const file = ${JSON.stringify(multiplex)};\n`;
  const app = new Application(t, begin + source, Object.assign({}, sound, variables));
  return app
    .connect()
    .then(steps)
    .then(() => app.ask('quit'))
    .then(() => app);
}

/** Resolves with the mark in the bounds of the screen, once it is so. */
function untilMarked(app, bounds, isSo) {
  const file = app.file('screen.png');
  const look = () => readMark(readPicture(file), bounds);
  return app.askUntil('capture', { file }, () => isSo(look()));
}

/** Resolves once a picture of that service is seen within the bounds. */
function untilSeen(app, service, bounds) {
  return untilMarked(app, bounds || SCREEN, (mark) => mark && mark.service === service);
}

const isBlack = (app) => readPicture(app.file('screen.png')).colorAt(640, 600) === '#000000';

test('each service has its own picture, within its bounds, above what was made before', (t) => {
  const corner = { x: 40, y: 40, w: 320, h: 180 };
  const source = `
    tune(file);
    let one = play(256, 257, 256);
    let two;
    onKeys({
      49: () => { two = play(272, 273, 272); two.setBounds(${JSON.stringify(corner)}); },
      50: () => one.stop(),
      51: () => one.start(),
      52: () => two.release()
    });`;
  return run(t, source, (app) =>
    app
      .untilListening()
      .then(() => untilSeen(app, 1))
      .then(() => app.press('1'))
      .then(() => untilSeen(app, 2, corner))
      .then(() => t.pass('the second service lies in a corner of the first'))
      .then(() => app.press('2'))
      .then(() => app.askUntil('capture', { file: app.file('screen.png') }, () => isBlack(app)))
      .then(() => untilSeen(app, 2, corner))
      .then(() => t.pass('a stopped player shows nothing, the other one goes on'))
      .then(() => app.press('3'))
      .then(() => app.press('4'))
      .then(() => untilSeen(app, 1))
      .then(() => t.pass('it can be started again'))
  );
});

test('captions are read as text, and subtitles are counted', (t) => {
  const source = `
    tune(file);
    const one = play(256, 257, 256);
    const two = play(272, 273, 272);
    onKeys({ 49: () => one.toggleClosedCaption('1'), 50: () => one.toggleClosedCaption(false),
      51: () => two.toggleClosedCaption('274') });`;
  return run(t, source, (app) => {
    const untilCaptions = (isSo) =>
      app
        .askUntil('captions', {}, (answer) => isSo(answer.players))
        .then((answer) => answer.players);
    const isOff = (player) => player.captions === 0 && player.lines.length === 0;
    return app
      .untilListening()
      .then(() => untilCaptions(() => true))
      .then((players) => t.ok(players.length === 2 && players.every(isOff), 'off at first'))
      .then(() => app.press('1'))
      .then(() => app.ask('captions', { text: 'Bom', timeout: 20000 }))
      .then((answer) => t.deepEqual(answer.players[0].lines, ['Bom dia']))
      .then(() => app.press('2'))
      .then(() => untilCaptions((players) => players[0].captions === 0))
      .then((players) => t.deepEqual(players[0].lines, [], 'switched off'))
      .then(() => app.press('3'))
      .then(() => untilCaptions((players) => players[1].pictures === 1))
      .then((players) => t.equal(players[1].captions, 274))
      .then(() => app.ask('captions', { text: 'never', timeout: 1 }))
      .then((answer) => t.ok(/no caption with "never" was seen within 1 ms/.test(answer.error)));
  });
});

test('what is not there is not played, and nothing ends the application', (t) => {
  const source = `
    tune(file);
    say('refused ' + play(8192, 8191, 8191) + ' ' + play(-1, 0, 0));
    const players = [[8191, 8191, 8191], [1000, 257, 256], [257, 256, 256], [256, 1000, 8191],
      [0, 0, 0], [256, 256, 256]].map((pids) => play(pids[0], pids[1], pids[2]));
    players.forEach((player) => {
      player.setBounds({});
      player.setVolume(0.5);
      player.toggleClosedCaption('4096');
    });
    players.forEach((player, index) => { if (index !== 3) player.release(); });
    players[3].setBounds({ x: 0, y: 0, w: 1280, h: 720 });
    players[0].start();`;
  return run(t, source, (app) =>
    untilSeen(app, 1).then(() => t.deepEqual(app.said()[0], 'refused undefined undefined'))
  );
});

test('live television lies below everything, and the runtime state tells of it', (t) => {
  const corner = { x: 900, y: 40, w: 320, h: 180 };
  const source = `
    platformServices.initProperties();
    const status = () => say('live ' + platformServices.getLiveDTVStatus());
    status();
    const two = play(272, 273, 272);
    two.setBounds(${JSON.stringify(corner)});
    onKeys({
      49: () => { platformServices.toggleLiveDTV(true); status(); },
      50: () => platformServices.enableDTVEvents(),
      51: () => { platformServices.toggleLiveDTV(false); status(); }
    });`;
  const steps = (app) => {
    const told = () => app.said().filter((line) => !/^key/.test(line));
    return app
      .untilListening()
      .then(() => app.press('1'))
      .then(() => untilSeen(app, 1))
      .then(() => untilSeen(app, 2, corner))
      .then(() => t.pass('the first service is seen, below the player that was there before'))
      .then(() => app.press('2'))
      .then(() => app.nudgeUntil(() => told().length >= 3))
      .then(() => app.press('3'))
      .then(() => app.nudgeUntil(() => told().length >= 5))
      .then(() => {
        const states = 'runtimestatechange overlay, runtimestatechange running';
        t.equal(told().sort().join(', '), `live false, live false, live true, ${states}`);
        return app.askUntil('tuner', {}, (answer) => answer.tuner.state === 'idle');
      })
      .then(() => t.pass('the device gives its tuner back'));
  };
  return run(t, source, steps, { QUIRAVENT_LIVE_TELEVISION: multiplex });
});

/** Loudest sample of a WAV file of 16 bits. */
function loudest(file) {
  const bytes = fs.readFileSync(file);
  let most = 0;
  for (let at = 44; at + 1 < bytes.length; at += 2)
    most = Math.max(most, Math.abs(bytes.readInt16LE(at)));
  return most;
}

test('the volume is that of the broadcast at 1.0, and nothing is heard at 0', (t) => {
  const played = (volume) => {
    const file = path.join(folder, `volume-${volume}.wav`);
    const source = `
      tune(file);
      const player = tunerServices.getPlayer(256, 257, 256);
      player.setVolume(${volume});
      player.start();`;
    // A picture of the second loop: by then a second of sound has been heard at least.
    const steps = (app) => untilMarked(app, SCREEN, (mark) => mark && mark.number > 60);
    return run(t, source, steps, { QUIRAVENT_AUDIO: 'wav', QUIRAVENT_AUDIO_FILE: file })
      .then((app) => app.end)
      .then(() => loudest(file));
  };
  return Promise.all([played(1), played(0.5), played(0)]).then((levels) => {
    t.ok(levels[0] > 1000, `a sound is heard: ${levels[0]}`);
    t.ok(Math.abs(levels[1] * 2 - levels[0]) < levels[0] / 10, `half as loud: ${levels[1]}`);
    t.equal(levels[2], 0);
  });
});
