'use strict';

// Puts a scene and the lettering of a title together to one SVG picture.

const fancies = require('./fancies');
const landscapes = require('./landscapes');
const skies = require('./skies');
const towns = require('./towns');
const { background, pictures } = require('./pictures');
const { rectangle, vertical } = require('./shapes');
const { seededRandom } = require('./random');

const scenes = Object.assign({}, landscapes, skies, towns, fancies);
const posterSize = { width: 320, height: 480 };
const backgroundSize = { width: 1920, height: 1080 };
const margin = 22;
const lowestBaseline = 446;

const styles = {
  bold: { weight: 900, spacing: -0.5, upper: true, glyphWidth: 0.76, tallest: 46 },
  light: { weight: 300, spacing: 1, upper: false, glyphWidth: 0.6, tallest: 46 },
  wide: { weight: 600, spacing: 6, upper: true, glyphWidth: 0.96, tallest: 38 }
};

function svg(size, body) {
  return (
    `<svg xmlns="http://www.w3.org/2000/svg" width="${size.width}" height="${size.height}" ` +
    `viewBox="0 0 ${size.width} ${size.height}">${body}</svg>\n`
  );
}

function seedOf(text) {
  return Array.from(text).reduce((seed, letter) => Math.imul(seed, 31) + letter.charCodeAt(0), 7);
}

/** Every way to break words into at most `count` lines. */
function breaks(words, count) {
  const found = [[words.join(' ')]];
  for (let first = 1; first < words.length && count > 1; first++) {
    const line = words.slice(0, first).join(' ');
    breaks(words.slice(first), count - 1).forEach((rest) => found.push([line].concat(rest)));
  }
  return found;
}

const longestOf = (lines) =>
  Math.max.apply(
    null,
    lines.map((line) => line.length)
  );

/** Breaks a title into at most three lines: short ones, but no more of them than it takes. */
function breakTitle(title) {
  const cost = (lines) => 3 * lines.length + longestOf(lines);
  return breaks(title.split(' '), 3).reduce((best, lines) =>
    cost(lines) < cost(best) ? lines : best
  );
}

function escapeText(text) {
  return text.replace(/&/g, '&amp;').replace(/</g, '&lt;');
}

function lettering(title, place) {
  const style = styles[place.style];
  const lines = breakTitle(style.upper ? title.toUpperCase() : title);
  const longest = longestOf(lines);
  const room = posterSize.width - 2 * margin - longest * style.spacing;
  const height = Math.min(style.tallest, room / (longest * style.glyphWidth));
  const step = height * 1.08;
  const last =
    place.at === 'top' ? margin + 8 + height * 0.8 + step * (lines.length - 1) : lowestBaseline;
  const rows = lines.map((line, index) => {
    const y = last - step * (lines.length - 1 - index);
    return `<text x="160" y="${y.toFixed(1)}">${escapeText(line)}</text>`;
  });
  const shade = place.at === 'top' ? ['#000000/0.5', '#000000/0'] : ['#000000/0', '#000000/0.7'];
  const reach = step * lines.length + 90;
  const from = place.at === 'top' ? 0 : posterSize.height - reach;
  const backing = place.band
    ? rectangle(
        0,
        last - step * (lines.length - 1) - height * 1.2,
        posterSize.width,
        posterSize.height,
        place.band
      )
    : vertical('shade', shade) + rectangle(0, from, posterSize.width, reach, 'url(#shade)');
  return (
    (place.ink ? '' : backing) +
    `<g font-family="Inter Display, Inter, sans-serif" font-weight="${style.weight}" ` +
    `font-size="${height.toFixed(1)}" letter-spacing="${style.spacing}" text-anchor="middle" ` +
    `fill="${place.ink || '#ffffff'}">${rows.join('')}</g>`
  );
}

/** The poster of an item of the catalogue, as SVG text. */
function drawPoster(item) {
  const [scene, place, colors] = pictures[item.id];
  const body = scenes[scene](posterSize, colors, seededRandom(seedOf(item.id)));
  return svg(posterSize, body + lettering(item.title, place));
}

/** The background of the home screen, as SVG text. */
function drawBackground() {
  const random = seededRandom(seedOf(background.scene));
  return svg(backgroundSize, scenes[background.scene](backgroundSize, background.colors, random));
}

module.exports = { drawBackground, drawPoster };
