'use strict';

// What is seen in the sample media: scenes wider than the picture, along which the camera moves.

const landscapes = require('../artwork/landscapes');
const { seededRandom } = require('../artwork/random');
const { background } = require('../artwork/pictures');

/** Of the film: 2.35 to 1, as in the cinema. */
const picture = { width: 1280, height: 544 };

/** The camera moves by two pixels from one picture to the next: steadily, since by whole ones. */
const step = 2;

const shots = [
  { scene: 'bay', colors: background.colors },
  {
    scene: 'mountains',
    colors: {
      sky: ['#f3b38a', '#e98a7b', '#8c5a7d'],
      land: ['#8d6f93', '#5f4f78', '#3a3559', '#1d2039'],
      light: '#fff1cf',
      at: [0.5, 0.36]
    }
  },
  {
    scene: 'sea',
    colors: {
      sky: ['#2c4a7c', '#6f7fae', '#f0a987'],
      land: ['#7d6f96', '#2b3a63', '#0f1a38'],
      light: '#ffe6b8',
      at: [0.55, 0.5]
    }
  }
];

/** The scenes of the film, for `frames` pictures each, as SVG texts. */
function drawScenes(frames) {
  const size = { width: picture.width + step * frames, height: picture.height };
  return shots.map((shot, index) => {
    const body = landscapes[shot.scene](size, shot.colors, seededRandom(41 + index));
    return (
      `<svg xmlns="http://www.w3.org/2000/svg" width="${size.width}" height="${size.height}" ` +
      `viewBox="0 0 ${size.width} ${size.height}">${body}</svg>\n`
    );
  });
}

/** The card of the advertisement, higher than the picture by the way of the camera. */
function drawCard(frames) {
  const height = 720 + step * frames;
  const rings = [300, 230, 160]
    .map(
      (radius, index) =>
        `<circle cx="930" cy="470" r="${radius}" fill="#fff3df" opacity="${0.25 + index * 0.2}"/>`
    )
    .join('');
  const steam = [-40, 0, 40]
    .map(
      (x) =>
        `<path d="M${930 + x} 390 c -22 -34 22 -50 0 -88" stroke="#8a4b2a" stroke-width="9" ` +
        'stroke-linecap="round" fill="none" opacity="0.7"/>'
    )
    .join('');
  return (
    `<svg xmlns="http://www.w3.org/2000/svg" width="1280" height="${height}" ` +
    `viewBox="0 0 1280 ${height}"><defs><linearGradient id="dawn" x1="0" y1="0" x2="0" y2="1">` +
    '<stop offset="0" stop-color="#f7c77e"/><stop offset="1" stop-color="#e2714d"/>' +
    `</linearGradient></defs><rect width="1280" height="${height}" fill="url(#dawn)"/>${rings}` +
    '<path d="M838 420 h184 v70 a92 92 0 0 1 -184 0 Z" fill="#8a4b2a"/>' +
    '<path d="M1022 436 h22 a34 34 0 0 1 0 68 h-34" stroke="#8a4b2a" stroke-width="16" fill="none"/>' +
    `${steam}<rect x="812" y="590" width="236" height="14" rx="7" fill="#8a4b2a"/>` +
    '<g font-family="Inter Display, Inter, sans-serif" fill="#4a2413">' +
    '<text x="110" y="440" font-size="92" font-weight="800">Café Aurora</text>' +
    '<text x="114" y="504" font-size="36" font-weight="500">The morning, in a cup.</text></g></svg>\n'
  );
}

module.exports = { drawCard, drawScenes, picture, step };
