'use strict';

// Scenes of what happens in the sky, as in landscapes.js; drawn for a poster of 320 by 480.

const {
  circle,
  cloud,
  crescent,
  polygon,
  radial,
  rectangle,
  ridge,
  round,
  sky,
  stars,
  wave
} = require('./shapes');

/** The black sun and its corona. */
function eclipse(size, colors, random) {
  const rays = [];
  for (let angle = 0; angle < 360; angle += 6) {
    const length = random.between(118, 196);
    rays.push(
      `<path d="M160 190 m -1.5 0 l 1.5 -${round(length)} l 1.5 ${round(length)} Z" ` +
        `fill="${colors.light}" opacity="0.25" transform="rotate(${angle} 160 190)"/>`
    );
  }
  return (
    sky(size, colors.sky) +
    stars(random, size, 120, 480) +
    radial('corona', [
      `${colors.light}/1`,
      `${colors.light}/0.75`,
      `${colors.accent}/0.25`,
      `${colors.accent}/0`
    ]) +
    circle(160, 190, 190, 'url(#corona)') +
    rays.join('') +
    circle(160, 190, 88, colors.dark) +
    circle(226, 132, 8, '#ffffff') +
    ridge(random, size, 440, 40, colors.dark) +
    // The observatory.
    rectangle(64, 372, 44, 60, colors.dark) +
    circle(86, 374, 25, colors.dark) +
    polygon(
      [
        [84, 374],
        [104, 344],
        [110, 348],
        [94, 378]
      ],
      colors.dark
    )
  );
}

function balloon(x, y, scale, paints) {
  const gore = (width, fill) =>
    `<ellipse cx="${x}" cy="${y}" rx="${width * scale}" ry="${52 * scale}" fill="${fill}"/>`;
  const rope = (side) =>
    `<path d="M${x + side * 24 * scale} ${y + 44 * scale} L ${x + side * 8 * scale} ${y + 80 * scale}" stroke="#3b2f2a" stroke-width="1.5"/>`;
  return (
    gore(46, paints[0]) +
    gore(32, paints[1]) +
    gore(15, paints[0]) +
    polygon(
      [
        [x - 30 * scale, y + 39 * scale],
        [x + 30 * scale, y + 39 * scale],
        [x + 10 * scale, y + 60 * scale],
        [x - 10 * scale, y + 60 * scale]
      ],
      paints[1]
    ) +
    rope(-1) +
    rope(1) +
    rectangle(x - 10 * scale, y + 78 * scale, 20 * scale, 14 * scale, '#5a4030')
  );
}

/** Hot-air balloons over rolling hills. */
function balloons(size, colors) {
  return (
    sky(size, colors.sky) +
    circle(244, 116, 40, colors.light) +
    cloud(70, 250, 0.9, '#ffffff', 0.75) +
    cloud(268, 286, 0.7, '#ffffff', 0.6) +
    balloon(128, 148, 1.5, ['#e4572e', '#ffc145']) +
    balloon(250, 232, 0.72, ['#2e6f95', '#a9d6e5']) +
    balloon(46, 318, 0.5, ['#6a4c93', '#f1c0e8']) +
    colors.land
      .map((fill, index) => wave(size, 372 + index * 36, 16, 260, index * 2, fill))
      .join('')
  );
}

/** A ringed planet, its moon and a small ship. */
function planet(size, colors, random) {
  // Its far half is drawn before the planet, the near one after it.
  const ring = (sweep) =>
    `<path d="M-142 0 A 142 32 0 0 ${sweep} 142 0" fill="none" stroke="${colors.accent}" ` +
    'stroke-width="10" opacity="0.85" transform="translate(168 190) rotate(-12)"/>';
  return (
    sky(size, colors.sky) +
    stars(random, size, 170, 480) +
    radial('nebula', [`${colors.accent}/0.45`, `${colors.accent}/0`]) +
    circle(80, 360, 190, 'url(#nebula)') +
    '<linearGradient id="ball" x1="0" y1="0" x2="1" y2="1">' +
    `<stop offset="0" stop-color="${colors.light}"/><stop offset="0.55" stop-color="${colors.land[0]}"/>` +
    `<stop offset="1" stop-color="${colors.land[1]}"/></linearGradient>` +
    ring(1) +
    circle(168, 190, 98, 'url(#ball)') +
    `<path d="M78 152 q 90 34 180 6 M72 196 q 96 36 192 8 M84 236 q 84 28 164 8" stroke="${colors.land[1]}" stroke-width="7" fill="none" opacity="0.4"/>` +
    ring(0) +
    crescent(268, 62, 18, colors.light) +
    polygon(
      [
        [92, 342],
        [100, 310],
        [108, 342]
      ],
      '#ffffff'
    ) +
    polygon(
      [
        [96, 344],
        [100, 368],
        [104, 344]
      ],
      colors.light,
      0.8
    )
  );
}

/** Kites above a hill. */
function kites(size, colors, random) {
  const kite = (x, y, scale, angle, paints) =>
    `<g transform="translate(${x} ${y}) rotate(${angle}) scale(${scale})">` +
    '<path d="M0 62 C 20 100 -24 124 4 168 S -14 218 6 250" stroke="#2b2d42" stroke-width="2" fill="none"/>' +
    polygon(
      [
        [0, -60],
        [40, 0],
        [0, 62]
      ],
      paints[0]
    ) +
    polygon(
      [
        [0, -60],
        [-40, 0],
        [0, 62]
      ],
      paints[1]
    ) +
    polygon(
      [
        [0, -60],
        [40, 0],
        [-40, 0]
      ],
      '#ffffff',
      0.25
    ) +
    '</g>';
  return (
    sky(size, colors.sky) +
    cloud(60, 92, 0.9, '#ffffff', 0.9) +
    cloud(262, 226, 0.8, '#ffffff', 0.8) +
    kite(184, 136, 1.35, 24, ['#ef476f', '#ffd166']) +
    kite(70, 232, 0.7, -14, ['#118ab2', '#06d6a0']) +
    kite(272, 96, 0.5, 36, ['#8338ec', '#ff9f1c']) +
    wave(size, 396, 20, 420, random() + 2.4, colors.land[0]) +
    wave(size, 432, 16, 300, 1, colors.land[1])
  );
}

/** One round cloud with a face, over small hills. */
function littleCloud(size, colors) {
  return (
    sky(size, colors.sky) +
    circle(258, 96, 44, colors.light) +
    cloud(160, 218, 2.1, '#ffffff') +
    circle(128, 216, 7, '#33415c') +
    circle(186, 216, 7, '#33415c') +
    circle(112, 236, 12, '#ff9eb5', 0.6) +
    circle(202, 236, 12, '#ff9eb5', 0.6) +
    '<path d="M142 234 q 15 14 30 0" stroke="#33415c" stroke-width="5" fill="none" stroke-linecap="round"/>' +
    // A weathercock looks on.
    `<path d="M58 420 V 322 M40 340 H 76" stroke="${colors.dark}" stroke-width="4"/>` +
    polygon(
      [
        [34, 322],
        [58, 296],
        [86, 308],
        [74, 324]
      ],
      colors.dark
    ) +
    wave(size, 396, 18, 300, 0.4, colors.land[0]) +
    wave(size, 430, 14, 220, 2, colors.land[1])
  );
}

module.exports = { balloons, eclipse, kites, littleCloud, planet };
