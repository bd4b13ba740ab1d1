'use strict';

// The media that the sample player plays: a film with sound in two languages, told apart by their
// tones (440 Hz English, 660 Hz Portuguese) and subtitles in both, and an advertisement (880 Hz).
// Each picture carries its number, for people in digits and for programs in blocks; see
// frame-counter.js.

const fs = require('fs');
const path = require('path');
const { makeFiles } = require('../lib/made-files');
const { mustRun } = require('../lib/run');
const { counter, rate } = require('./frame-counter');
const { drawCard, drawScenes, picture, step } = require('./scenes');
const { subtitles } = require('./subtitles');

const sceneFrames = 16 * rate;
const adFrames = 6 * rate;
const font = '/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf';
const names = ['film.mp4', 'advertisement.mp4'];

const x264 = '-c:v libx264 -preset ultrafast -crf 20 -pix_fmt yuv420p -g 25 -bf 2'.split(' ');
const sound = '-c:a aac -b:a 96k -ac 2'.split(' ');

const ffmpeg = (words) =>
  mustRun('ffmpeg', ['-nostdin', '-hide_banner', '-loglevel', 'error', '-y'].concat(words), {
    capture: true
  });

const lavfi = (source) => ['-f', 'lavfi', '-i', source];

/** A soft tone that swells and falls. */
const tone = (frequency, seconds) =>
  lavfi(`aevalsrc='0.12*sin(2*PI*${frequency}*t)*(0.6+0.4*sin(PI*t/2))':s=48000:d=${seconds}`);

/** A picture, decoded once, as a video of so many frames, along which the camera moves. */
const moving = (input, frames, size, x, y) =>
  `[${input}]format=yuv420p,loop=loop=${frames - 1}:size=1,setpts=N/(${rate}*TB),` +
  `crop=${size.width}:${size.height}:${x}:${y}`;

/** Puts the numbers on the pictures; input: that of the blocks. */
function numbered(video, input, right) {
  const { x, y, width, height } = counter;
  const digits =
    `drawtext=fontfile=${font}:fontsize=18:fontcolor=white@0.9:` +
    `text='%{eif\\:n\\:d\\:4}':x=${x - 56}:y=${y}+${height}-text_h`;
  return (
    `[${input}]scale=${width}:${height}:flags=neighbor[blocks];` +
    `${video}[blocks]overlay=${x}:${y}:shortest=1,${digits},format=yuv420p[${right}]`
  );
}

/** The blocks of the numbers, one pixel each; the lowest bit comes first. */
const blocks = (frames) =>
  lavfi(
    `color=c=black:s=${counter.bits}x2:r=${rate}:d=${frames / rate},format=gray,` +
      "geq=lum='if(mod(floor(N/pow(2,X)),2),235,16)'"
  );

function draw(svg, file) {
  fs.writeFileSync(`${file}.svg`, svg);
  mustRun('rsvg-convert', ['--output', file, `${file}.svg`], { capture: true });
  return file;
}

const flat = (lists) => [].concat.apply([], lists);
const inputs = (files) => flat(files.map((file) => ['-i', file]));
const encoded = (frames, file) =>
  x264.concat(sound, '-t', frames / rate, '-movflags', '+faststart', file);

function writeSubtitles(work) {
  return subtitles.map((track) => {
    const file = path.join(work, `${track.language}.srt`);
    fs.writeFileSync(file, track.text);
    return file;
  });
}

/** The languages of the film's tracks: sound and subtitles in both. */
function languages() {
  const words = ['a', 's'].map((kind) =>
    subtitles.map((track, index) => [`-metadata:s:${kind}:${index}`, `language=${track.language}`])
  );
  return flat(flat(words));
}

function makeFilm(work, scenes) {
  const frames = scenes.length * sceneFrames;
  const files = scenes.map((svg, index) => draw(svg, path.join(work, `scene-${index}.png`)));
  const shots = files.map(
    (file, index) => `${moving(index, sceneFrames, picture, `n*${step}`, 0)}[s${index}];`
  );
  const joined = files.map((file, index) => `[s${index}]`).join('');
  const filter =
    `${shots.join('')}${joined}concat=n=${files.length}[film];` +
    numbered('[film]', files.length, 'v');
  const tracks = ['[v]'].concat([1, 2, 3, 4].map((after) => files.length + after));
  ffmpeg(
    inputs(files).concat(
      blocks(frames),
      tone(440, frames / rate),
      tone(660, frames / rate),
      inputs(writeSubtitles(work)),
      ['-filter_complex', filter],
      flat(tracks.map((track) => ['-map', track])),
      languages(),
      ['-c:s', 'mov_text'],
      encoded(frames, path.join(work, 'film.mp4'))
    )
  );
}

function makeAdvertisement(work, card) {
  const file = draw(card, path.join(work, 'card.png'));
  const screen = { width: 1280, height: 720 };
  const shot = moving(0, adFrames, screen, 0, `n*${step}`);
  ffmpeg(
    inputs([file]).concat(
      blocks(adFrames),
      tone(880, adFrames / rate),
      ['-filter_complex', `${shot}[card];${numbered('[card]', 1, 'v')}`],
      ['-map', '[v]', '-map', '2'],
      encoded(adFrames, path.join(work, 'advertisement.mp4'))
    )
  );
}

/** Makes the sample media in a folder, in some seconds; at once when they are there. */
function makeMedia(folder) {
  const scenes = drawScenes(sceneFrames);
  const card = drawCard(adFrames);
  const sources = scenes.concat(
    card,
    JSON.stringify(subtitles),
    ['./make', './frame-counter'].map((name) => fs.readFileSync(require.resolve(name)))
  );
  makeFiles(folder, names, sources, (work) => {
    console.log(`Making the sample media in ${folder}`);
    makeFilm(work, scenes);
    makeAdvertisement(work, card);
  });
}

module.exports = { makeMedia };
