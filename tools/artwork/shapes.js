'use strict';

// What several scenes are made of, as SVG text. All lengths are in pixels of the picture.

const round = (number) => Math.round(number * 10) / 10;

const points = (list) => list.map((point) => `${round(point[0])},${round(point[1])}`).join(' ');

/** A closed shape of straight edges. */
function polygon(list, fill, opacity) {
  return `<polygon points="${points(list)}" fill="${fill}" opacity="${opacity === undefined ? 1 : opacity}"/>`;
}

function circle(x, y, radius, fill, opacity) {
  return `<circle cx="${round(x)}" cy="${round(y)}" r="${round(radius)}" fill="${fill}" opacity="${
    opacity === undefined ? 1 : opacity
  }"/>`;
}

function rectangle(x, y, width, height, fill, opacity) {
  return (
    `<rect x="${round(x)}" y="${round(y)}" width="${round(width)}" height="${round(height)}" ` +
    `fill="${fill}" opacity="${opacity === undefined ? 1 : opacity}"/>`
  );
}

function stops(colors) {
  return colors
    .map((color, index) => {
      const [paint, opacity] = color.split('/');
      const offset = index / (colors.length - 1);
      return `<stop offset="${offset}" stop-color="${paint}" stop-opacity="${opacity === undefined ? 1 : opacity}"/>`;
    })
    .join('');
}

/** Colours from top to bottom; "#rrggbb/0.5" is half transparent. Used as fill="url(#id)". */
function vertical(id, colors) {
  return `<linearGradient id="${id}" x1="0" y1="0" x2="0" y2="1">${stops(colors)}</linearGradient>`;
}

/** Colours from the centre outwards. */
function radial(id, colors) {
  return `<radialGradient id="${id}">${stops(colors)}</radialGradient>`;
}

/** A sky over the whole picture. */
function sky(size, colors) {
  return vertical('sky', colors) + rectangle(0, 0, size.width, size.height, 'url(#sky)');
}

/** A disc of light with a halo that fades out at four times its radius. */
function glow(x, y, radius, color) {
  const halo = radial('halo', [`${color}/0.55`, `${color}/0.18`, `${color}/0`]);
  return halo + circle(x, y, radius * 4, 'url(#halo)') + circle(x, y, radius, color);
}

/** A waning moon: a disc less the part that a shifted disc covers. */
function crescent(x, y, radius, color) {
  const [left, top] = [round(x + radius * 0.2), round(y - radius * 0.98)];
  const outer = `A ${radius} ${radius} 0 1 0 ${round(x + radius * 0.98)} ${round(y + radius * 0.2)}`;
  const inner = `A ${round(radius * 0.8)} ${round(radius * 0.8)} 0 1 1 ${left} ${top}`;
  return `<path d="M${left} ${top} ${outer} ${inner} Z" fill="${color}"/>`;
}

function stars(random, size, count, depth) {
  const list = [];
  for (let index = 0; index < count; index++) {
    const x = random() * size.width;
    const y = random() * depth;
    list.push(circle(x, y, random.between(0.4, 1.5), '#ffffff', round(random.between(0.3, 0.9))));
  }
  return list.join('');
}

/** The line of a mountain range: midpoints displaced by half as much at each finer level. */
function ridgeLine(random, size, base, height, levels) {
  const count = Math.ceil(size.width / 320);
  let line = [];
  for (let index = 0; index <= count; index++) {
    line.push([(size.width * index) / count, base - random() * height]);
  }
  let reach = height;
  for (let level = 0; level < levels; level++) {
    const finer = [line[0]];
    for (let index = 1; index < line.length; index++) {
      const [from, to] = [line[index - 1], line[index]];
      const middle = (from[1] + to[1]) / 2 + random.between(-reach, reach) * 0.5;
      finer.push([(from[0] + to[0]) / 2, middle], to);
    }
    line = finer;
    reach *= 0.52;
  }
  return line;
}

/** A mountain range, filled down to the bottom of the picture. */
function ridge(random, size, base, height, fill) {
  const line = ridgeLine(random, size, base, height, 7);
  return polygon(
    line.concat([
      [size.width, size.height],
      [0, size.height]
    ]),
    fill
  );
}

/** A band with a sine for its upper edge, filled down to the bottom of the picture. */
function wave(size, base, height, length, phase, fill, opacity) {
  const line = [];
  for (let x = 0; x <= size.width + 4; x += 4) {
    line.push([x, base + height * Math.sin((x / length) * 2 * Math.PI + phase)]);
  }
  return polygon(
    line.concat([
      [size.width, size.height],
      [0, size.height]
    ]),
    fill,
    opacity
  );
}

function pine(x, foot, height, fill) {
  const tiers = [0, 0.28, 0.52].map((top, index) => {
    const half = height * (0.13 + index * 0.07);
    const bottom = foot - height * (0.62 - index * 0.27);
    return polygon(
      [
        [x, foot - height * (1 - top)],
        [x + half, bottom],
        [x - half, bottom]
      ],
      fill
    );
  });
  return (
    tiers.join('') +
    rectangle(x - height * 0.025, foot - height * 0.1, height * 0.05, height * 0.1, fill)
  );
}

function pines(random, size, foot, height, fill, gap) {
  const list = [];
  for (let x = -gap; x < size.width + gap; x += random.between(gap * 0.5, gap)) {
    list.push(pine(x, foot + random.between(-4, 6), height * random.between(0.6, 1), fill));
  }
  return list.join('');
}

/** Lit windows of a building, about a third of them dark. */
function windows(random, x, top, width, bottom, color) {
  const list = [];
  for (let row = top + 8; row < bottom - 8; row += 12) {
    for (let column = x + 5; column < x + width - 6; column += 9) {
      if (random() > 0.62)
        list.push(rectangle(column, row, 4, 6, color, round(random.between(0.4, 0.9))));
    }
  }
  return list.join('');
}

/** A row of houses, or of towers, that stands on the bottom of the picture. */
function skyline(random, size, base, height, fill, light) {
  const list = [];
  let x = -10;
  while (x < size.width) {
    const width = random.between(26, 54);
    const top = base - random.between(0.25, 1) * height;
    list.push(rectangle(x, top, width + 1, size.height - top, fill));
    if (random() > 0.7) list.push(rectangle(x + width / 2, top - 22, 2, 22, fill));
    if (light) list.push(windows(random, x, top, width, size.height, light));
    x += width;
  }
  return list.join('');
}

function cloud(x, y, scale, fill, opacity) {
  const puffs = [
    [-42, 4, 22],
    [-16, -12, 30],
    [18, -8, 26],
    [44, 6, 18]
  ];
  const discs = puffs.map((puff) =>
    circle(x + puff[0] * scale, y + puff[1] * scale, puff[2] * scale, fill)
  );
  const base = rectangle(x - 44 * scale, y + 2 * scale, 90 * scale, 22 * scale, fill);
  return `<g opacity="${opacity === undefined ? 1 : opacity}">${discs.join('')}${base}</g>`;
}

/** Strips of light on water below a light in the sky. */
function reflection(random, x, horizon, bottom, width, color) {
  const list = [];
  for (let y = horizon + 4; y < bottom; y += random.between(6, 11)) {
    const near = (y - horizon) / (bottom - horizon);
    const length = width * (0.5 + near) * random.between(0.5, 1);
    const left = x - length / 2 + random.between(-8, 8);
    list.push(rectangle(left, y, length, 1.5 + near * 2.5, color, round(0.7 - near * 0.45)));
  }
  return list.join('');
}

module.exports = {
  circle,
  cloud,
  crescent,
  glow,
  pines,
  polygon,
  radial,
  rectangle,
  reflection,
  ridge,
  round,
  sky,
  skyline,
  stars,
  vertical,
  wave,
  windows
};
