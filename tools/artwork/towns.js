'use strict';

// Scenes of houses and people, as in landscapes.js; drawn for a poster of 320 by 480.

const { circle, crescent, glow, polygon, radial, rectangle } = require('./shapes');
const { reflection, ridge, sky, skyline, stars, vertical, wave } = require('./shapes');

/** A city in layers, the farthest palest; colors.land from far to near. */
function city(size, colors, random) {
  const rows = colors.land.map((fill, index) => {
    const light = index === colors.land.length - 1 ? colors.light : null;
    return skyline(random, size, 330 + index * 52, 190 - index * 36, fill, light);
  });
  const sun = glow(size.width * colors.at[0], size.height * colors.at[1], 46, colors.light);
  return sky(size, colors.sky) + sun + rows.join('');
}

/** A twin-towered church, an arched bridge and their lights on a river. */
function river(size, colors, random) {
  const tower = (x) =>
    rectangle(x, 190, 26, 120, colors.dark) +
    polygon(
      [
        [x - 3, 192],
        [x + 13, 96],
        [x + 29, 192]
      ],
      colors.dark
    ) +
    rectangle(x + 9, 206, 8, 26, colors.light, 0.85) +
    rectangle(x + 9, 246, 8, 26, colors.light, 0.6);
  const arches = [0, 1, 2].map(
    (index) =>
      `<path d="M${20 + index * 100} 318 a 46 42 0 0 1 92 0" fill="none" stroke="${colors.dark}" stroke-width="6"/>`
  );
  return (
    sky(size, colors.sky) +
    stars(random, size, 60, 160) +
    skyline(random, size, 308, 90, colors.land[0], colors.light) +
    rectangle(96, 232, 90, 80, colors.dark) +
    tower(86) +
    tower(164) +
    vertical('river', [colors.land[1], colors.land[2]]) +
    rectangle(0, 318, 320, 162, 'url(#river)') +
    arches.join('') +
    rectangle(0, 314, 320, 6, colors.dark) +
    reflection(random, 120, 322, 480, 60, colors.light) +
    reflection(random, 232, 322, 480, 34, colors.light)
  );
}

/** A walled town at night, and a lighthouse with its beam. */
function lighthouse(size, colors, random) {
  const beam = polygon(
    [
      [222, 158],
      [0, 76],
      [0, 190]
    ],
    'url(#beam)',
    0.8
  );
  const tower =
    polygon(
      [
        [208, 176],
        [236, 176],
        [246, 340],
        [198, 340]
      ],
      '#f4ead8'
    ) +
    polygon(
      [
        [206, 214],
        [238, 214],
        [241, 250],
        [203, 250]
      ],
      colors.accent
    ) +
    polygon(
      [
        [202, 288],
        [242, 288],
        [245, 324],
        [199, 324]
      ],
      colors.accent
    ) +
    rectangle(204, 168, 36, 8, colors.dark) +
    rectangle(212, 146, 20, 22, colors.light) +
    polygon(
      [
        [206, 147],
        [222, 128],
        [238, 147]
      ],
      colors.dark
    );
  return (
    sky(size, colors.sky) +
    stars(random, size, 110, 300) +
    '<linearGradient id="beam">' +
    `<stop offset="0" stop-color="${colors.light}" stop-opacity="0"/>` +
    `<stop offset="1" stop-color="${colors.light}" stop-opacity="0.75"/></linearGradient>` +
    beam +
    tower +
    skyline(random, { width: 150, height: 360 }, 336, 62, colors.land[0], colors.light) +
    `<path d="M0 352 Q 110 330 320 338 V 480 H 0 Z" fill="${colors.land[1]}"/>` +
    wave(size, 400, 7, 110, 0, colors.land[2]) +
    wave(size, 432, 6, 90, 2, colors.land[3])
  );
}

/** A night train on a viaduct between mountains. */
function viaduct(size, colors, random) {
  const piers = [20, 100, 180, 260].map((x) => rectangle(x, 300, 18, 180, colors.dark));
  const arches = [20, 100, 180].map(
    (x) => `<path d="M${x + 9} 366 a 40 46 0 0 1 80 0 V 300 H ${x + 9} Z" fill="${colors.dark}"/>`
  );
  const cars = [0, 1, 2, 3].map((index) => {
    const x = 36 + index * 66;
    const lit = [0, 1, 2, 3].map((pane) => rectangle(x + 7 + pane * 13, 266, 8, 9, colors.light));
    return `<rect x="${x}" y="258" width="62" height="30" rx="5" fill="${colors.accent}"/>${lit.join('')}`;
  });
  return (
    sky(size, colors.sky) +
    stars(random, size, 60, 150) +
    glow(232, 104, 24, colors.light) +
    ridge(random, size, 236, 110, colors.land[0]) +
    ridge(random, size, 318, 80, colors.land[1]) +
    ridge(random, size, 440, 70, colors.land[2]) +
    arches.join('') +
    piers.join('') +
    rectangle(0, 288, 320, 14, colors.dark) +
    cars.join('')
  );
}

/** A lonely house on a hill with one lit window. */
function house(size, colors, random) {
  return (
    sky(size, colors.sky) +
    stars(random, size, 80, 220) +
    circle(160, 176, 96, colors.light, 0.92) +
    circle(132, 150, 15, '#000000', 0.05) +
    circle(190, 196, 22, '#000000', 0.05) +
    `<path d="M0 420 Q 120 270 210 292 T 320 360 V 480 H 0 Z" fill="${colors.land[0]}"/>` +
    polygon(
      [
        [134, 214],
        [172, 168],
        [210, 214]
      ],
      colors.dark
    ) +
    rectangle(142, 212, 60, 86, colors.dark) +
    rectangle(190, 176, 11, 26, colors.dark) +
    rectangle(164, 222, 16, 20, colors.accent) +
    rectangle(171, 222, 2, 20, colors.dark) +
    rectangle(164, 231, 16, 2, colors.dark) +
    `<path d="M172 298 C 150 350, 230 370, 180 480 H 130 C 190 380, 120 350, 164 298 Z" fill="${colors.land[1]}"/>` +
    `<path d="M64 372 l0 -96 m0 34 l-24 -30 m24 12 l26 -34 m-26 60 l20 -18" stroke="${colors.dark}" stroke-width="5" fill="none"/>`
  );
}

/** A person in front of a tall lit window. */
function figure(size, colors) {
  const pane = (x, y) => rectangle(x, y, 66, 92, 'url(#light)');
  return (
    sky(size, colors.sky) +
    vertical('light', [colors.light, colors.land[0]]) +
    radial('spill', [`${colors.light}/0.5`, `${colors.light}/0`]) +
    circle(160, 200, 210, 'url(#spill)') +
    pane(90, 46) +
    pane(164, 46) +
    pane(90, 146) +
    pane(164, 146) +
    pane(90, 246) +
    pane(164, 246) +
    polygon(
      [
        [84, 346],
        [236, 346],
        [300, 480],
        [20, 480]
      ],
      colors.light,
      0.16
    ) +
    // Hat, head, neck, coat.
    `<ellipse cx="160" cy="164" rx="50" ry="11" fill="${colors.dark}"/>` +
    `<path d="M134 164 Q 134 124 160 124 T 186 164 Z" fill="${colors.dark}"/>` +
    `<ellipse cx="160" cy="188" rx="25" ry="31" fill="${colors.dark}"/>` +
    rectangle(150, 210, 20, 28, colors.dark) +
    `<path d="M88 480 C 92 300, 100 244, 150 232 H 170 C 220 244, 228 300, 232 480 Z" fill="${colors.dark}"/>` +
    `<path d="M150 234 L160 270 L170 234" fill="${colors.accent}"/>`
  );
}

/** A cup with its steam, seen flat. */
function cafe(size, colors) {
  const steam = [128, 156, 184].map(
    (x, index) =>
      `<path d="M${x} ${214 - index * 4} c -20 -26 20 -40 0 -68 s 14 -34 2 -54" stroke="${colors.light}" ` +
      'stroke-width="7" stroke-linecap="round" fill="none" opacity="0.8"/>'
  );
  return (
    sky(size, colors.sky) +
    circle(160, 236, 128, colors.land[0]) +
    steam.join('') +
    `<ellipse cx="160" cy="348" rx="118" ry="20" fill="${colors.dark}"/>` +
    `<ellipse cx="160" cy="342" rx="118" ry="20" fill="${colors.land[2]}"/>` +
    `<path d="M216 256 h 22 a 32 32 0 0 1 0 64 h -34" fill="none" stroke="#fff6e8" stroke-width="13"/>` +
    '<path d="M84 236 H 228 C 228 310, 200 344, 156 344 S 84 310, 84 236 Z" fill="#fff6e8"/>' +
    '<path d="M156 344 C 200 344 228 310 228 236 H 190 C 192 300 184 336 156 344 Z" fill="#e6d6bd"/>' +
    `<ellipse cx="156" cy="236" rx="72" ry="14" fill="${colors.dark}"/>` +
    `<ellipse cx="156" cy="238" rx="60" ry="9" fill="${colors.land[1]}"/>`
  );
}

/** A baker's house with the moon on its roof. */
function bakery(size, colors, random) {
  const door = `<path d="M182 372 v -46 a 20 20 0 0 1 40 0 v 46 Z" fill="${colors.dark}"/>`;
  const awning = [0, 1, 2, 3, 4].map((index) =>
    polygon(
      [
        [70 + index * 19, 294],
        [89 + index * 19, 294],
        [87 + index * 19.6, 318],
        [66 + index * 19.6, 318]
      ],
      index % 2 === 0 ? colors.accent : '#fff4e0'
    )
  );
  return (
    sky(size, colors.sky) +
    stars(random, size, 90, 260) +
    crescent(214, 150, 44, colors.light) +
    skyline(random, size, 352, 96, colors.land[0], null) +
    rectangle(52, 250, 196, 124, colors.land[1]) +
    polygon(
      [
        [36, 254],
        [92, 188],
        [208, 188],
        [264, 254]
      ],
      colors.land[2]
    ) +
    rectangle(86, 170, 18, 44, colors.land[2]) +
    rectangle(72, 318, 88, 40, colors.light) +
    awning.join('') +
    door +
    rectangle(0, 372, 320, 108, colors.dark)
  );
}

module.exports = { bakery, cafe, city, figure, house, lighthouse, river, viaduct };
