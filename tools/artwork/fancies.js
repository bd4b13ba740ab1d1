'use strict';

// Scenes of plain shapes, plants and a fox, as in landscapes.js; drawn for a poster of 320 by 480.

const { circle, glow, polygon, rectangle, round, sky, wave } = require('./shapes');

/** A pane that is broken into triangles. */
function shards(size, colors, random) {
  const step = 64;
  const corner = (column, row) => [
    column * step - 32 + (random() - 0.5) * 44,
    row * step - 32 + (random() - 0.5) * 44
  ];
  const grid = [];
  for (let row = 0; row < 10; row++) {
    grid.push([0, 1, 2, 3, 4, 5, 6].map((column) => corner(column, row)));
  }
  const pieces = [];
  for (let row = 1; row < 10; row++) {
    for (let column = 1; column < 7; column++) {
      const square = [
        grid[row - 1][column - 1],
        grid[row - 1][column],
        grid[row][column],
        grid[row][column - 1]
      ];
      [
        [0, 1, 2],
        [0, 2, 3]
      ].forEach((triangle) => {
        const paint = colors.land[Math.floor(random() * colors.land.length)];
        pieces.push(
          `<polygon points="${triangle.map((index) => square[index].map(round)).join(' ')}" fill="${paint}" stroke="${colors.dark}" stroke-width="3"/>`
        );
      });
    }
  }
  const shine = polygon(
    [
      [0, 60],
      [320, 300],
      [320, 360],
      [0, 120]
    ],
    '#ffffff',
    0.12
  );
  return sky(size, colors.sky) + pieces.join('') + shine;
}

/** A record and the keys of a piano. */
function record(size, colors) {
  const grooves = [150, 136, 122, 108, 94, 80].map((radius) =>
    circle(160, 222, radius, '#000000', 0.16)
  );
  const keys = [0, 1, 2, 3, 4, 5, 6, 7].map(
    (index) =>
      rectangle(index * 40 + 1, 410, 38, 80, '#f2f2f2') +
      (index % 7 === 2 || index % 7 === 6
        ? ''
        : rectangle(index * 40 + 28, 410, 24, 44, colors.dark))
  );
  return (
    sky(size, colors.sky) +
    circle(160, 222, 152, colors.dark) +
    grooves.join('') +
    polygon(
      [
        [160, 222],
        [20, 166],
        [44, 122]
      ],
      '#ffffff',
      0.1
    ) +
    polygon(
      [
        [160, 222],
        [300, 278],
        [276, 322]
      ],
      '#ffffff',
      0.1
    ) +
    circle(160, 222, 50, colors.accent) +
    circle(160, 222, 8, colors.sky[0]) +
    rectangle(0, 400, 320, 80, colors.dark) +
    keys.join('')
  );
}

/** A grid of quarter circles and keyholes. */
function tiles(size, colors, random) {
  const cell = 80;
  const list = [];
  for (let row = 0; row < 6; row++) {
    for (let column = 0; column < 4; column++) {
      const [x, y] = [column * cell, row * cell];
      const paint = () => colors.land[Math.floor(random() * colors.land.length)];
      list.push(rectangle(x, y, cell, cell, paint()));
      const turn = Math.floor(random() * 4) * 90;
      const shape =
        random() > 0.3
          ? `<path d="M${x} ${y} h ${cell} a ${cell} ${cell} 0 0 1 -${cell} ${cell} Z" fill="${paint()}"/>`
          : circle(x + 40, y + 32, 15, colors.dark) +
            polygon(
              [
                [x + 34, y + 38],
                [x + 46, y + 38],
                [x + 53, y + 66],
                [x + 27, y + 66]
              ],
              colors.dark
            );
      list.push(`<g transform="rotate(${turn} ${x + 40} ${y + 40})">${shape}</g>`);
    }
  }
  return sky(size, colors.sky) + list.join('');
}

/** A fox that sits, in facets. */
function fox(size, colors, random) {
  const trees = [20, 66, 262, 304].map((x) =>
    polygon(
      [
        [x - 26, 400],
        [x, 150 + random() * 60],
        [x + 26, 400]
      ],
      colors.land[0]
    )
  );
  return (
    sky(size, colors.sky) +
    circle(160, 150, 104, colors.light, 0.9) +
    trees.join('') +
    rectangle(0, 392, 320, 88, colors.land[1]) +
    // Tail, body, chest.
    '<path d="M212 396 C 296 396 300 300 250 274 C 262 318 236 344 196 356 Z" fill="#2a5fa8"/>' +
    '<path d="M250 274 C 268 284 278 302 276 322 C 266 312 256 304 254 296 Z" fill="#eaf4ff"/>' +
    polygon(
      [
        [118, 396],
        [126, 260],
        [194, 260],
        [216, 396]
      ],
      '#3572c6'
    ) +
    polygon(
      [
        [138, 396],
        [146, 276],
        [174, 276],
        [184, 396]
      ],
      '#eaf4ff'
    ) +
    // Ears, face, cheeks, nose, eyes.
    polygon(
      [
        [102, 206],
        [112, 132],
        [150, 180]
      ],
      '#2a5fa8'
    ) +
    polygon(
      [
        [218, 206],
        [208, 132],
        [170, 180]
      ],
      '#2a5fa8'
    ) +
    polygon(
      [
        [96, 212],
        [130, 176],
        [190, 176],
        [224, 212],
        [160, 290]
      ],
      '#4485dd'
    ) +
    polygon(
      [
        [96, 212],
        [136, 222],
        [160, 290]
      ],
      '#eaf4ff'
    ) +
    polygon(
      [
        [224, 212],
        [184, 222],
        [160, 290]
      ],
      '#eaf4ff'
    ) +
    circle(160, 284, 9, '#13233f') +
    circle(134, 216, 6, '#13233f') +
    circle(186, 216, 6, '#13233f')
  );
}

/** Flowers, each with petals of its own number and colour. */
function garden(size, colors, random) {
  const flower = (x, y, radius, paint) => {
    const count = 6 + Math.floor(random() * 4);
    const petals = [];
    for (let index = 0; index < count; index++) {
      petals.push(
        `<ellipse cx="${x}" cy="${y - radius}" rx="${round(radius * 0.42)}" ry="${round(radius * 0.8)}" fill="${paint}" ` +
          `transform="rotate(${round((360 / count) * index)} ${x} ${y})"/>`
      );
    }
    const stem = `<path d="M${x} ${y} Q ${x + random.between(-26, 26)} ${y + 120} ${x + random.between(-12, 12)} 480" stroke="${colors.land[0]}" stroke-width="6" fill="none"/>`;
    return stem + petals.join('') + circle(x, y, radius * 0.52, colors.light);
  };
  const beds = [
    [60, 244, 30],
    [136, 190, 40],
    [218, 252, 32],
    [276, 180, 26],
    [98, 332, 24],
    [184, 346, 30],
    [262, 338, 22]
  ];
  return (
    sky(size, colors.sky) +
    circle(252, 82, 36, colors.light) +
    beds
      .map((bed, index) =>
        flower(bed[0], bed[1], bed[2], colors.petals[index % colors.petals.length])
      )
      .join('') +
    wave(size, 432, 8, 120, 0, colors.land[0]) +
    wave(size, 452, 8, 90, 2, colors.land[1])
  );
}

/** Large leaves in front of a lit pane. */
function leaves(size, colors, random) {
  const leaf = (x, y, scale, angle, paint) =>
    `<g transform="translate(${x} ${y}) rotate(${angle}) scale(${scale})">` +
    `<path d="M0 0 C -74 -40 -70 -150 0 -210 C 70 -150 74 -40 0 0 Z" fill="${paint}"/>` +
    `<path d="M0 0 V -200 M0 -40 L-42 -72 M0 -40 L42 -72 M0 -88 L-44 -122 M0 -88 L44 -122 M0 -134 L-30 -160 M0 -134 L30 -160" stroke="${colors.light}" stroke-opacity="0.3" stroke-width="3"/></g>`;
  const panes = [];
  for (let column = 0; column < 4; column++) {
    for (let row = 0; row < 4; row++)
      panes.push(rectangle(14 + column * 74, 14 + row * 92, 68, 86, colors.light, 0.14));
  }
  const list = colors.land.map((paint, index) => {
    const angle = -66 + index * (132 / (colors.land.length - 1)) + random.between(-6, 6);
    return leaf(160, 430, 1.25 + random.between(-0.2, 0.15), angle, paint);
  });
  return (
    sky(size, colors.sky) +
    panes.join('') +
    glow(160, 132, 40, colors.light) +
    list.join('') +
    polygon(
      [
        [112, 416],
        [208, 416],
        [196, 480],
        [124, 480]
      ],
      colors.accent
    )
  );
}

module.exports = { fox, garden, leaves, record, shards, tiles };
