'use strict';

// What playing costs: times of the player's functions against their aims, and its processor time
// beside that of FFmpeg's own program, which decodes and scales the same film at the same pace in the
// same run. Ratios count; absolute times go with the machine.

const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');

const root = path.join(__dirname, '..', '..');
const build = process.env.QUIRAVENT_BUILD || path.join(root, 'build', 'release');
const folder = path.join(build, 'bench');
const program = path.join(folder, 'media_bench');

const ROUNDS = 5;
const SECONDS = 5;
/** Pictures from key picture to key picture. */
const GROUP = 25;
const LONG_GROUP = 250;
const FILMS = [
  { name: '720p', size: '1280x720', share: 1.1 },
  { name: '1080p', size: '1920x1080', share: 0.95 }
];
const TIMES = [
  { what: 'first', name: 'first picture', aim: 20 },
  { what: 'seek', name: 'exact seek', group: LONG_GROUP },
  { what: 'thumbnail', name: 'thumbnail', aim: 10 },
  { what: 'calls', name: 'any call, p99', part: 0.99, aim: 1 }
];

function mustRun(command, words) {
  const run = spawnSync(command, words, { encoding: 'utf8', maxBuffer: 1 << 26 });
  if (run.error) throw run.error;
  if (run.status !== 0) throw new Error(`${command} ${words.join(' ')}: ${run.stderr}`);
  return run.stdout;
}

/** A film of 25 pictures a second, with sound. */
function filmFile(film, group) {
  const file = path.join(folder, `film-${film.name}-${group}.mp4`);
  if (fs.existsSync(file)) return file;
  const sources = [`testsrc2=s=${film.size}:r=25:d=30`, 'sine=440:r=48000:d=30'];
  const inputs = sources.reduce((words, each) => words.concat(['-f', 'lavfi', '-i', each]), []);
  const coding = `-c:v libx264 -preset veryfast -g ${group} -pix_fmt yuv420p -c:a aac`.split(' ');
  const part = file + '.part.mp4';
  mustRun(
    'ffmpeg',
    ['-v', 'error', '-y'].concat(inputs, coding, ['-movflags', '+faststart', part])
  );
  fs.renameSync(part, file);
  return file;
}

/** The value below which that part of the samples lies. */
function quantile(samples, part) {
  const sorted = samples.slice().sort((a, b) => a - b);
  return sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * part))];
}

/** Processor time of all children that have ended, in seconds. */
function childrenTime() {
  const fields = fs
    .readFileSync('/proc/self/stat', 'utf8')
    .replace(/^.*\) /, '')
    .split(' ');
  return (Number(fields[13]) + Number(fields[14])) / 100;
}

function timeOf(command, words) {
  const before = childrenTime();
  mustRun(command, words);
  return childrenTime() - before;
}

function printRow(cells) {
  console.log(
    cells
      .map((cell, column) => String(cell)[column ? 'padStart' : 'padEnd'](column ? 12 : 26))
      .join('')
  );
}

function measureTimes(film) {
  TIMES.forEach((each) => {
    const file = filmFile(film, each.group || GROUP);
    const samples = mustRun(program, [each.what, file]).trim().split('\n').map(Number);
    printRow([
      `${film.name} ${each.name}`,
      quantile(samples, each.part || 0.5).toFixed(2),
      `${quantile(samples, 0.1).toFixed(1)}-${quantile(samples, 0.9).toFixed(1)}`,
      each.aim || ''
    ]);
  });
}

/** Both alternate, so that the machine's moods meet both. */
function measureShare(film) {
  const file = filmFile(film, GROUP);
  const scaled = ['-map', '0:v', '-vf', 'scale=1280:720', '-pix_fmt', 'bgr0', '-f', 'null', '-'];
  const sound = ['-map', '0:a', '-f', 'null', '-'];
  const limit = ['-t', String(SECONDS)];
  const peer = ['-v', 'error', '-re', '-i', file].concat(limit, scaled, limit, sound);
  const ours = [];
  const theirs = [];
  for (let round = 0; round < ROUNDS; ++round) {
    ours.push(timeOf(program, ['play', file, String(SECONDS)]));
    theirs.push(timeOf('ffmpeg', peer));
  }
  const share = (times) => ((100 * quantile(times, 0.5)) / SECONDS).toFixed(1);
  const ratios = ours.map((time, round) => time / theirs[round]);
  printRow([
    `${film.name} processor`,
    share(ours),
    share(theirs),
    (quantile(ours, 0.5) / quantile(theirs, 0.5)).toFixed(2),
    `${quantile(ratios, 0).toFixed(2)}-${quantile(ratios, 1).toFixed(2)}`,
    film.share
  ]);
}

function main() {
  printRow(['', 'ms', '10-90%', 'aim']);
  FILMS.forEach(measureTimes);
  printRow(['', '% ours', '% ffmpeg', 'ratio', 'range', 'aim']);
  FILMS.forEach(measureShare);
}

main();
