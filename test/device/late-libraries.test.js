'use strict';

// What an application meets where the libraries of media and of the network can't be opened.

const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const { installed, spoilLibraries } = require('./support/broken-libraries');
const { newFolder, root } = require('./support/files');

const APPLICATION = `
  const { graphicServices, mediaServices, tunerServices } =
    require(${JSON.stringify(path.join(root, 'lib'))});
  const said = [];
  const note = (next) => (error, result) => {
    said.push(error ? error.message : typeof result);
    next();
  };
  const film = (next) => mediaServices.getPlayer('/', { x: 0, y: 0, w: 64, h: 36 }, note(next));
  const picture = (next) => graphicServices.loadImage('http://127.0.0.1:1/', note(next));
  film(() => film(() => picture(() => {
    said.push(typeof tunerServices.getPlayer(256, 257, 256));
    const canvas = graphicServices.createCanvas(2, 2);
    canvas.setColor('#112233');
    canvas.fillRect(0, 0, 2, 2);
    said.push(canvas.isInvalid());
    process.stdout.write(JSON.stringify(said), () => process.exit(0));
  })));`;

/** Runs the application with spoilt libraries: { status, said, errors: lines }. */
function runSpoilt(t, spoil) {
  const folder = newFolder(t);
  spoilLibraries(folder, spoil);
  const env = Object.assign({}, process.env, {
    LD_LIBRARY_PATH: [folder, process.env.LD_LIBRARY_PATH].join(path.delimiter),
    QUIRAVENT_STORAGE: folder
  });
  const words = ['-e', APPLICATION];
  const run = spawnSync(process.execPath, words, { env, encoding: 'utf8', timeout: 60000 });
  const errors = run.stderr.split('\n').filter((line) => line);
  return { status: run.status, said: JSON.parse(run.stdout), errors };
}

[
  [
    'a damaged library',
    (file) => fs.writeFileSync(file, ''),
    /libavformat\.so\.\d+: file too short/,
    /libcurl[-\w]*\.so\.\d+: file too short/
  ],
  [
    'another library of that name',
    (file) => fs.symlinkSync(installed(/^libm\.so\.6$/)[0], file),
    /libavformat\.so\.\d+ has no av\w+/,
    /libcurl[-\w]*\.so\.\d+ has no curl_\w+/
  ]
].forEach(([name, spoil, media, network]) =>
  test(`${name} is told in one line, and the rest of the device works`, (t) => {
    const run = runSpoilt(t, spoil);
    const refused = 'Error on getPlayer';
    t.equal(run.status, 0);
    t.deepEqual(run.said, [refused, refused, 'Error on loading image', 'undefined', false]);
    const expected = [
      `: pl_media_CreateUrlPlayer: media can't be used: .*${media.source}`,
      `: pl_media_CreateUrlPlayer: media can't be used: .*${media.source}`,
      `: pl_gfx_LoadImage: .* the HTTP client can't be used: .*${network.source}`,
      `: pl_dtv_Action_getPlayer: media can't be used: .*${media.source}`
    ];
    t.ok(
      new RegExp(`^.*${expected.join('.*\n.*')}.*$`).test(run.errors.join('\n')),
      run.errors.join('\n')
    );
    t.end();
  })
);
