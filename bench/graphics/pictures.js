'use strict';

// The pictures of the scenes, drawn once from a fixed seed and kept beside the peers: some with the
// detail of photographs, some with round corners, some transparent.

const fs = require('fs');
const path = require('path');
const { moduleFolder } = require('../lib/peers');

const folder = path.join(moduleFolder('..'), 'pictures-1');
const POSTERS = 40;

const fileOf = (name) => path.join(folder, name);
const posterFiles = Array.from({ length: POSTERS }, (_, i) => fileOf(`poster-${i}.jpg`));

function randomNumbers(seed) {
  let state = seed;
  return () => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return state / 4294967296;
  };
}

/** Soft shapes of all sizes under a fine grain. */
function paint(createCanvas, width, height, seed) {
  const canvas = createCanvas(width, height);
  const context = canvas.getContext('2d');
  const random = randomNumbers(seed);
  const color = () => `hsl(${random() * 360}, ${30 + random() * 50}%, ${20 + random() * 60}%)`;
  const gradient = context.createLinearGradient(0, 0, width * random(), height);
  gradient.addColorStop(0, color());
  gradient.addColorStop(1, color());
  context.fillStyle = gradient;
  context.fillRect(0, 0, width, height);
  for (let i = 0; i < 80; ++i) {
    context.globalAlpha = 0.2 + random() * 0.6;
    context.fillStyle = color();
    context.beginPath();
    const radius = (Math.pow(random(), 3) * width) / 3 + 1;
    context.arc(random() * width, random() * height, radius, 0, 7);
    context.fill();
  }
  addGrain(context, width, height, random);
  return canvas;
}

function addGrain(context, width, height, random) {
  const image = context.getImageData(0, 0, width, height);
  for (let i = 0; i < image.data.length; i += 4) {
    const grain = (random() - 0.5) * 16;
    for (let k = 0; k < 3; ++k) image.data[i + k] += grain;
  }
  context.putImageData(image, 0, 0);
}

/** Keeps what lies in a rounded rectangle. */
function roundCorners(canvas) {
  const context = canvas.getContext('2d');
  context.globalAlpha = 1;
  context.globalCompositeOperation = 'destination-in';
  context.beginPath();
  context.roundRect(0, 0, canvas.width, canvas.height, 16);
  context.fill();
}

/** Alpha from 10 % to 90 %, everywhere between. */
function fade(canvas) {
  const context = canvas.getContext('2d');
  const gradient = context.createLinearGradient(0, 0, canvas.width, canvas.height);
  gradient.addColorStop(0, 'rgba(0, 0, 0, 0.1)');
  gradient.addColorStop(1, 'rgba(0, 0, 0, 0.9)');
  context.globalAlpha = 1;
  context.globalCompositeOperation = 'destination-in';
  context.fillStyle = gradient;
  context.fillRect(0, 0, canvas.width, canvas.height);
}

function makePictures({ createCanvas }) {
  const picture = (width, height, seed) => paint(createCanvas, width, height, seed);
  const save = (name, bytes) => fs.writeFileSync(fileOf(name), bytes);
  posterFiles.forEach((file, i) => {
    fs.writeFileSync(file, picture(320, 480, i + 1).toBuffer('image/jpeg', 88));
    save(`tile-${i}.jpg`, picture(320, 213, i + 101).toBuffer('image/jpeg', 88));
    save(`small-${i}.jpg`, picture(160, 240, i + 201).toBuffer('image/jpeg', 88));
    const rounded = picture(160, 240, i + 301);
    roundCorners(rounded);
    save(`rounded-${i}.png`, rounded.toBuffer('image/png'));
    const faded = picture(160, 240, i + 401);
    fade(faded);
    save(`faded-${i}.png`, faded.toBuffer('image/png'));
  });
  const screen = picture(1280, 720, 501);
  save('screen.jpg', screen.toBuffer('image/jpeg', 88));
  save('screen.png', screen.toBuffer('image/png'));
  save('screen.webp', screen.toBuffer('image/webp', 80));
  save('large.jpg', picture(1920, 1080, 502).toBuffer('image/jpeg', 88));
}

function ensurePictures(library) {
  const done = fileOf('complete');
  if (fs.existsSync(done)) return;
  fs.mkdirSync(folder, { recursive: true });
  makePictures(library);
  fs.writeFileSync(done, '');
}

/** Names of sets: 'poster', 'tile', 'small', 'rounded', 'faded' (40 each), 'screen', 'large'. */
function filesOf(set) {
  if (set === 'poster') return posterFiles;
  if (set === 'screen' || set === 'large') return [fileOf(`${set}.jpg`)];
  const type = set === 'rounded' || set === 'faded' ? 'png' : 'jpg';
  return Array.from({ length: POSTERS }, (_, i) => fileOf(`${set}-${i}.${type}`));
}

module.exports = { ensurePictures, fileOf, filesOf };
