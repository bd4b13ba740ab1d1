'use strict';

// Plays real media as an application does, on the desktop device without a window.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const { medium, root } = require('./support/files');
const { readPicture } = require('./support/png');

const BOUNDS = { x: 160, y: 90, w: 960, h: 540 };
const SECOND_50TH = 2000;

/** Runs a script in which `quiravent`, `film`, `bounds` and `say(value)` are known. */
function runScript(folder, source) {
  const prelude = `
    const quiravent = require(${JSON.stringify(path.join(root, 'lib'))});
    const film = (name) => ${JSON.stringify(medium(''))} + '/' + name;
    const bounds = ${JSON.stringify(BOUNDS)};
    const say = (value) => require('fs').writeSync(1, JSON.stringify(value) + '\\n');
    const orEnd = (done) => (error, result) => {
      if (error) { say(error); process.exit(1); }
      done(result);
    };`;
  const env = Object.assign({}, process.env, {
    QUIRAVENT_SCREENSHOT: path.join(folder, 'screen.png'),
    QUIRAVENT_STORAGE: folder,
    QUIRAVENT_AUDIO: 'null',
    UV_THREADPOOL_SIZE: '8'
  });
  delete env.DISPLAY;
  const words = ['-e', prelude + source];
  const run = spawnSync(process.execPath, words, { env, encoding: 'utf8', timeout: 60000 });
  const said = run.stdout.split('\n').filter((line) => line);
  return { status: run.status, errors: run.stderr, said: said.map((line) => JSON.parse(line)) };
}

function newFolder(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-player-'));
  t.teardown(() => spawnSync('rm', ['-rf', folder]));
  return folder;
}

/** The number that a picture of the film carries in twelve blocks along its upper edge. */
function pictureNumber(screen) {
  let number = 0;
  for (let bit = 0; bit < 12; bit++) {
    const x = BOUNDS.x + Math.round(((bit + 0.5) * BOUNDS.w) / 12);
    if (parseInt(screen.colorAt(x, BOUNDS.y + 20).slice(1, 3), 16) > 128) number += 1 << bit;
  }
  return number;
}

test('a film plays to its end, and its player tells so', (t) => {
  const source = `
    quiravent.mediaServices.getPlayer(film('short.mp4'), bounds, orEnd((player) => {
      player.registerListener(
        (name, value) => {
          say(name);
          if (name !== 'playback_completed') return;
          say([player.getTracks('audio'), player.getBufferedTimes().length]);
          player.unload();
        },
        () => { say('listener ended'); process.exit(0); });
      player.start();
    }));`;
  const run = runScript(newFolder(t), source);
  t.deepEqual([run.status, run.errors], [0, '']);
  const names = run.said.filter((each) => each !== 'fetch_in_progress');
  t.deepEqual(names, [
    'fetch_ready',
    'playback_ready',
    'playback_completed',
    [[{ id: 1, language: 'eng' }], 1],
    'listener ended'
  ]);
  t.end();
});

test('a seek shows the very picture, under what the application draws', (t) => {
  const folder = newFolder(t);
  const source = `
    const screen = quiravent.graphicServices.getTargetCanvas();
    screen.clearRect(0, 0, 1280, 720);
    screen.setColor('red');
    screen.fillRect(600, 400, 80, 60);
    screen.flush();
    quiravent.mediaServices.getPlayer(film('film.mp4'), bounds, orEnd((player) => {
      const settle = () => {
        if (player.getTime().now !== ${SECOND_50TH}) return void setTimeout(settle, 5);
        setTimeout(() => process.exit(0), 200);
      };
      player.registerListener((name) => {
        if (name !== 'playback_ready') return;
        player.pause();
        player.seek(${SECOND_50TH});
        settle();
      });
      player.start();
    }));`;
  const run = runScript(folder, source);
  t.deepEqual([run.status, run.errors], [0, '']);
  const screen = readPicture(path.join(folder, 'screen.png'));
  t.equal(pictureNumber(screen), 50);
  t.equal(screen.colorAt(640, 430), '#ff0000', 'the drawing lies above the film');
  t.equal(screen.colorAt(20, 20), '#000000', 'beside the film nothing is shown');
  t.end();
});

test('an advertisement plays while the film pauses, each with events of its own', (t) => {
  const source = `
    quiravent.mediaServices.getPlayer(film('film.mp4'), bounds, orEnd((player) => {
      const playAd = () => quiravent.mediaServices.getAdPlayer(film('short.mp4'), bounds,
        orEnd((ad) => {
          ad.registerListener((name) => {
            if (name === 'fetch_in_progress') return;
            say(['ad', name]);
            if (name !== 'playback_completed') return;
            say(player.getTime().now - paused < 500);
            process.exit(0);
          });
          ad.start();
        }));
      let paused;
      player.registerListener((name) => {
        if (name !== 'playback_ready') return;
        player.pause();
        paused = player.getTime().now;
        playAd();
      });
      player.start();
    }));`;
  const run = runScript(newFolder(t), source);
  t.deepEqual([run.status, run.errors], [0, '']);
  t.deepEqual(run.said, [
    ['ad', 'fetch_ready'],
    ['ad', 'playback_ready'],
    ['ad', 'playback_completed'],
    true
  ]);
  t.end();
});

test('what can not be played is told by an event', (t) => {
  const folder = newFolder(t);
  const source = `
    const names = ['missing.mp4', 'random.mp4', 'empty.mp4'];
    const tryNext = () => {
      const name = names.shift();
      if (!name) process.exit(0);
      quiravent.mediaServices.getPlayer(film(name), bounds, orEnd((player) => {
        player.registerListener(
          (event) => {
            if (event !== 'fetch_error') return;
            say(name);
            player.unload();
          }, tryNext);
        // An event that finds its worker not yet waiting lies until the next one, and here there
        // is none: the worker gets a moment to begin.
        setTimeout(() => player.fetch(), 300);
      }));
    };
    tryNext();`;
  const run = runScript(folder, source);
  t.equal(run.status, 0);
  t.deepEqual(run.said, ['missing.mp4', 'random.mp4', 'empty.mp4']);
  t.end();
});

/** Makes key.pem and certificate.pem of a server that only itself vouches for. */
function makeCertificate(folder) {
  const words = ['req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-days', '2'].concat(
    ['-subj', '/CN=localhost', '-addext', 'subjectAltName=DNS:localhost'],
    ['-keyout', path.join(folder, 'key.pem'), '-out', path.join(folder, 'certificate.pem')]
  );
  return spawnSync('openssl', words).status;
}

test('a server that nobody vouches for is not believed', (t) => {
  const folder = newFolder(t);
  t.equal(makeCertificate(folder), 0);
  const source = `
    const fs = require('fs');
    const read = (name) => fs.readFileSync(${JSON.stringify(folder)} + '/' + name + '.pem');
    let requests = 0;
    const options = { key: read('key'), cert: read('certificate') };
    const server = require('https').createServer(options, (request, response) => {
      requests += 1;
      response.end(fs.readFileSync(film('short.mp4')));
    });
    const tryMedia = (url) => quiravent.mediaServices.getPlayer(url, bounds, orEnd((player) => {
      player.registerListener((name) => {
        if (name !== 'fetch_error' && name !== 'fetch_ready') return;
        say([name, requests]);
        process.exit(0);
      });
      player.fetch();
    }));
    server.listen(0, () => {
      const url = 'https://localhost:' + server.address().port + '/short.mp4';
      quiravent.graphicServices.loadImage(url, (error) => {
        say(error.message);
        tryMedia(url);
      });
    });`;
  const run = runScript(folder, source);
  t.equal(run.status, 0, run.errors);
  t.deepEqual(run.said, ['Error on loading image', ['fetch_error', 0]]);
  t.end();
});
