'use strict';

// Shapes that a canvas has no call for, drawn once on a canvas of their own and composed from then
// on. An off-screen canvas starts out transparent.

const { graphicServices } = require('quiravent');

const cache = new Map();

/** A new off-screen canvas. Throws when the device has no memory left for it. */
function createCanvas(width, height) {
  const canvas = graphicServices.createCanvas(width, height);
  if (!canvas) throw new Error(`no graphics memory for a canvas of ${width} by ${height} pixels`);
  return canvas;
}

/** What draw makes of a new canvas, or made of it before under the same name. */
function remembered(name, width, height, draw) {
  const key = `${name} ${width} ${height}`;
  if (!cache.has(key)) {
    const canvas = createCanvas(width, height);
    draw(canvas);
    cache.set(key, canvas);
  }
  return cache.get(key);
}

/** Fills a rectangle with round corners in an opaque colour: its parts overlap. */
function fillRounded(canvas, color, x, y, width, height, radius) {
  const [left, top, right, bottom] = [
    x + radius,
    y + radius,
    x + width - radius,
    y + height - radius
  ];
  canvas.setColor(color);
  canvas.fillRect(left, y, width - 2 * radius, height);
  canvas.fillRect(x, top, width, height - 2 * radius);
  // A quarter for each corner, not a circle: where circles meet, in a pill or a dot, their soft
  // edges would be drawn on top of each other and lose their softness.
  [
    [right, bottom],
    [left, bottom],
    [left, top],
    [right, top]
  ].forEach((centre, quarter) =>
    canvas.drawEllipse(
      'fill',
      centre[0],
      centre[1],
      radius,
      radius,
      90 * quarter,
      90 * quarter + 90
    )
  );
}

function rounded(color, width, height, radius) {
  return remembered(`rounded ${color} ${radius}`, width, height, (canvas) =>
    fillRounded(canvas, color, 0, 0, width, height, radius)
  );
}

/** A frame with round corners; radius is that of its outer edge. */
function frame(color, width, height, radius, thickness) {
  return remembered(`frame ${color} ${radius} ${thickness}`, width, height, (canvas) => {
    fillRounded(canvas, color, 0, 0, width, height, radius);
    // What is drawn in this mode cuts a hole.
    canvas.setPorterDuff('DST_OUT');
    const inner = [width - 2 * thickness, height - 2 * thickness, radius - thickness];
    canvas.compose(rounded('#ffffff', inner[0], inner[1], inner[2]), thickness, thickness);
  });
}

/** A soft shadow of a rounded rectangle, which reaches `spread` pixels beyond it on every side. */
function shadow(width, height, radius, spread) {
  const outer = [width + 2 * spread, height + 2 * spread];
  return remembered(`shadow ${radius} ${spread}`, outer[0], outer[1], (canvas) => {
    canvas.setOpacity(1.2 / spread);
    for (let inset = 0; inset < spread; inset += 2) {
      const size = [outer[0] - 2 * inset, outer[1] - 2 * inset];
      canvas.compose(rounded('#000000', size[0], size[1], radius + spread - inset), inset, inset);
    }
  });
}

/** A colour, from one opacity at the top, or at the left, to another (0 to 255). */
function fade(color, width, height, from, to, isHorizontal) {
  return remembered(`fade ${color} ${from} ${to} ${isHorizontal}`, width, height, (canvas) => {
    const last = (isHorizontal ? width : height) - 1;
    for (let at = 0; at <= last; at++) {
      const opacity = Math.round(from + ((to - from) * at) / last);
      canvas.setColor(color + (opacity < 16 ? '0' : '') + opacity.toString(16));
      if (isHorizontal) canvas.fillRect(at, 0, 1, height);
      else canvas.fillRect(0, at, width, 1);
    }
  });
}

module.exports = { createCanvas, fade, fillRounded, frame, rounded, shadow };
