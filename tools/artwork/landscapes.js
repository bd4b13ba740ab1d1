'use strict';

// Scenes of the open country. Each takes the size of the picture, its colours and a source of
// random numbers, and gives SVG text.

const { circle, cloud, glow, pines, polygon, rectangle } = require('./shapes');
const { reflection, ridge, round, sky, stars, vertical, wave } = require('./shapes');

/** Ranges behind one another, the farthest palest; colors.land from far to near. */
function mountains(size, colors, random) {
  const { width, height } = size;
  const ranges = colors.land.map((fill, index) => {
    const base = height * (0.52 + index * 0.13);
    return ridge(random, size, base, height * (0.24 - index * 0.035), fill);
  });
  const nearest = colors.land[colors.land.length - 1];
  return (
    sky(size, colors.sky) +
    (colors.stars ? stars(random, size, (width * height) / 1700, height * 0.45) : '') +
    glow(width * colors.at[0], height * colors.at[1], width * 0.07, colors.light) +
    ranges.join('') +
    pines(random, size, height + 6, height * 0.17, nearest, width / 12)
  );
}

/** A low sun or moon over the sea. */
function sea(size, colors, random) {
  const { width, height } = size;
  const horizon = height * 0.58;
  const x = width * colors.at[0];
  return (
    sky(size, colors.sky) +
    (colors.stars ? stars(random, size, 70, horizon * 0.8) : '') +
    glow(x, height * colors.at[1], width * 0.13, colors.light) +
    vertical('water', colors.land) +
    rectangle(0, horizon, width, height - horizon, 'url(#water)') +
    reflection(random, x, horizon, height, width * 0.3, colors.light)
  );
}

/** A lake at night with a drowned bell tower. */
function lake(size, colors, random) {
  const tower =
    rectangle(196, 226, 34, 66, colors.dark) +
    polygon(
      [
        [192, 228],
        [213, 176],
        [234, 228]
      ],
      colors.dark
    ) +
    rectangle(209, 236, 8, 16, colors.light, 0.9) +
    rectangle(202, 292, 22, 60, colors.dark, 0.35);
  return (
    sea(size, colors, random) +
    ridge(random, { width: 320, height: 279 }, 276, 42, colors.dark) +
    tower
  );
}

/** A bear's round back in a small boat, under the moon. */
function boat(size, colors, random) {
  const hull = polygon(
    [
      [96, 330],
      [226, 330],
      [204, 358],
      [118, 358]
    ],
    colors.dark
  );
  const bear =
    circle(152, 308, 30, colors.fur) +
    circle(152, 268, 20, colors.fur) +
    circle(137, 253, 8, colors.fur) +
    circle(167, 253, 8, colors.fur) +
    circle(137, 253, 4, colors.dark) +
    circle(167, 253, 4, colors.dark) +
    circle(152, 275, 8, '#e8c9a0') +
    circle(152, 272, 3, colors.dark) +
    circle(145, 264, 2.2, colors.dark) +
    circle(159, 264, 2.2, colors.dark);
  const oar = `<path d="M188 276 L236 366" stroke="${colors.light}" stroke-width="5" stroke-linecap="round"/>`;
  return (
    sea(size, colors, random) + oar + bear + hull + wave(size, 366, 5, 60, 0, colors.land[1], 0.9)
  );
}

/** Breakers under a heavy sky. */
function storm(size, colors, random) {
  const { width, height } = size;
  const waves = colors.land.map((fill, index) => {
    const base = height * (0.5 + index * 0.115);
    const foam = wave(size, base - 5, 26 - index, 130 + index * 22, index * 1.9, '#ffffff', 0.5);
    return foam + wave(size, base, 26 - index, 130 + index * 22, index * 1.9, fill);
  });
  const clouds = [0.1, 0.45, 0.85].map((x, index) =>
    cloud(width * x, 60 + index * 26, 1.7, colors.dark, 0.55)
  );
  const rain = [];
  for (let count = 0; count < 70; count++) {
    const x = random() * width * 1.2;
    const y = random() * height * 0.6;
    rain.push(`<path d="M${round(x)} ${round(y)} l-7 22" stroke="#ffffff" opacity="0.22"/>`);
  }
  const bolt = polygon(
    [
      [206, 84],
      [176, 158],
      [200, 154],
      [182, 224],
      [232, 138],
      [206, 142],
      [226, 84]
    ],
    colors.light
  );
  return sky(size, colors.sky) + bolt + clouds.join('') + rain.join('') + waves.join('');
}

/** Dunes with a lit and a shaded side. */
function dunes(size, colors) {
  const { width, height } = size;
  const crest = (y, bend, fill, shade) =>
    `<path d="M0 ${y} C ${width * 0.3} ${y - bend}, ${width * 0.5} ${y + bend}, ${width} ${y - bend * 0.5} V ${height} H 0 Z" fill="${fill}"/>` +
    `<path d="M${width * 0.42} ${y} C ${width * 0.55} ${y + bend * 0.9}, ${width * 0.75} ${y + bend * 0.2}, ${width} ${y - bend * 0.5} V ${height} H ${width * 0.1} C ${width * 0.3} ${y + bend * 2}, ${width * 0.36} ${y + bend}, ${width * 0.42} ${y} Z" fill="${shade}"/>`;
  return (
    sky(size, colors.sky) +
    glow(width * colors.at[0], height * colors.at[1], width * 0.15, colors.light) +
    crest(height * 0.56, 46, colors.land[0], colors.land[1]) +
    crest(height * 0.7, 58, colors.land[1], colors.land[2]) +
    crest(height * 0.86, 50, colors.land[2], colors.land[3])
  );
}

/** Trunks in fog, layer before layer. */
function forest(size, colors, random) {
  const { width, height } = size;
  const layers = colors.land.map((fill, layer) => {
    const thick = 7 + layer * 8;
    const trunks = [];
    for (let x = random() * 30; x < width; x += random.between(26, 44) + layer * 26) {
      trunks.push(
        polygon(
          [
            [x, 0],
            [x + thick, 0],
            [x + thick * 1.35, height],
            [x - thick * 0.35, height]
          ],
          fill
        )
      );
    }
    const fog = rectangle(0, height * 0.35, width, height * 0.65, 'url(#fog)', 0.5);
    return trunks.join('') + fog;
  });
  const path = polygon(
    [
      [150, 300],
      [172, 300],
      [262, height],
      [58, height]
    ],
    colors.light,
    0.28
  );
  return (
    sky(size, colors.sky) +
    vertical('fog', [`${colors.light}/0`, `${colors.light}/0.35`]) +
    glow(160, 210, 34, colors.light) +
    layers.slice(0, 2).join('') +
    path +
    layers.slice(2).join('')
  );
}

/** An iceberg above and below the water. */
function iceberg(size, colors, random) {
  const { width, height } = size;
  const top = [
    [70, 232],
    [112, 132],
    [146, 158],
    [186, 92],
    [226, 176],
    [262, 232]
  ];
  const below = [
    [58, 236],
    [272, 236],
    [248, 318],
    [196, 404],
    [150, 432],
    [96, 350]
  ];
  return (
    sky(size, colors.sky) +
    stars(random, size, 40, 120) +
    ridge(random, { width, height: 234 }, 232, 34, colors.land[0]) +
    vertical('deep', [colors.land[1], colors.land[2]]) +
    rectangle(0, 234, width, height - 234, 'url(#deep)') +
    polygon(top, '#f4fbff') +
    polygon(
      [
        [186, 92],
        [226, 176],
        [262, 232],
        [196, 232],
        [172, 166]
      ],
      '#bfe0ee'
    ) +
    polygon(
      [
        [112, 132],
        [146, 158],
        [138, 232],
        [104, 232]
      ],
      '#d9eef7'
    ) +
    polygon(below, '#8fd0e6', 0.55) +
    polygon(
      [
        [180, 236],
        [272, 236],
        [248, 318],
        [196, 404]
      ],
      '#4fa3c4',
      0.5
    ) +
    rectangle(0, 232, width, 3, '#ffffff', 0.6)
  );
}

/** Islands that swim in bands of mist. */
function island(size, colors, random) {
  const { width, height } = size;
  const bands = colors.land.map((fill, index) => {
    const base = 212 + index * 78;
    const mist = rectangle(0, base - 26, width, 100, 'url(#mist)');
    return ridge(random, size, base, 92 - index * 14, fill) + mist;
  });
  return (
    sky(size, colors.sky) +
    vertical('mist', [`${colors.mist}/0`, `${colors.mist}/0.75`, `${colors.mist}/0`]) +
    glow(width * colors.at[0], height * colors.at[1], 26, colors.light) +
    bands.join('')
  );
}

/** A curtain of northern lights: rays that stand on a winding line and fade out upwards. */
function aurora(size, random, curtain) {
  const rays = [];
  for (let x = curtain.from; x < curtain.to; x += 9) {
    const along = (x - curtain.from) / (curtain.to - curtain.from);
    const foot =
      curtain.foot + 46 * Math.sin(along * 7 + curtain.phase) + 30 * Math.sin(along * 17);
    const length = curtain.length * random.between(0.65, 1) * (0.5 + Math.sin(along * Math.PI) / 2);
    const strength = round(Math.sin(along * Math.PI) * random.between(0.3, 0.62));
    rays.push(rectangle(x, foot - length, 26, length, `url(#${curtain.paint})`, strength));
  }
  return `<g filter="url(#soft)">${rays.join('')}</g>`;
}

/** A wide bay at night with northern lights: the background of the home screen. */
function bay(size, colors, random) {
  const { width, height } = size;
  const horizon = height * 0.56;
  const land = { width, height: horizon };
  const ranges = colors.land.map((fill, index) =>
    ridge(random, land, height * (0.47 + index * 0.045), height * (0.2 - index * 0.055), fill)
  );
  const moon = { x: width * 0.62, y: height * 0.13 };
  return (
    '<filter id="soft" x="-10%" y="-20%" width="120%" height="140%">' +
    '<feGaussianBlur stdDeviation="11 5"/></filter>' +
    vertical('green', ['#5ad1c9/0', '#4fe0b5/0.35', '#a6ffd8/0.95', '#4fe0b5/0']) +
    vertical('violet', ['#7a5cff/0', '#9a6cf5/0.4', '#f0a6ff/0.8', '#7a5cff/0']) +
    sky(size, colors.sky) +
    stars(random, size, 460, height * 0.5) +
    aurora(size, random, {
      from: 820,
      to: 1990,
      foot: 330,
      length: 300,
      phase: 0.4,
      paint: 'violet'
    }) +
    aurora(size, random, {
      from: 640,
      to: 1960,
      foot: 400,
      length: 330,
      phase: 2.2,
      paint: 'green'
    }) +
    glow(moon.x, moon.y, 27, colors.light) +
    ranges.join('') +
    vertical('water', colors.water) +
    rectangle(0, horizon, width, height - horizon, 'url(#water)') +
    reflection(random, moon.x, horizon, height, 170, colors.light)
  );
}

module.exports = { bay, boat, dunes, forest, iceberg, island, lake, mountains, sea, storm };
