'use strict';

const { HEIGHT, WIDTH } = require('../contestants');

const OPAQUE = [
  { r: 40, g: 80, b: 120, a: 255 },
  { r: 120, g: 80, b: 40, a: 255 }
];
const HALF = OPAQUE.map((color) => Object.assign({}, color, { a: 128 }));

const styleOf = (color) => `rgba(${color.r}, ${color.g}, ${color.b}, ${color.a / 255})`;

const wholeScreen = { ours: { x: 0, y: 0, w: WIDTH, h: HEIGHT }, count: 1 };

function position(index) {
  return { x: (index * 53) % (WIDTH - 60), y: (index * 97) % (HEIGHT - 40), w: 60, h: 40 };
}
const many = Array.from({ length: 200 }, (_, index) => position(index));

function filled(name, aim, colors, rects, limit) {
  return {
    name,
    aim,
    limit,
    ours: ({ newCanvas }) => {
      const canvas = newCanvas();
      return {
        canvas,
        frame: (i) => {
          canvas.setColor(colors[i & 1]);
          for (const rect of rects) canvas.fillRect(rect.x, rect.y, rect.w, rect.h);
        }
      };
    },
    peer: ({ newContext }) => {
      const context = newContext();
      const styles = colors.map(styleOf);
      return {
        context,
        frame: (i) => {
          context.fillStyle = styles[i & 1];
          for (const rect of rects) context.fillRect(rect.x, rect.y, rect.w, rect.h);
        }
      };
    }
  };
}

/** Of a surface with something on it, since a clear one may be left as it is. */
const cleared = {
  name: 'clear',
  aim: 1.1,
  limit: (memory) => memory.set(WIDTH, HEIGHT, 1),
  ours: ({ newCanvas }) => {
    const canvas = newCanvas();
    return {
      canvas,
      frame: () => {
        canvas.fillRect(5, 5, 1, 1);
        canvas.clearRect(0, 0, WIDTH, HEIGHT);
      }
    };
  },
  peer: ({ newContext }) => {
    const context = newContext();
    return {
      context,
      frame: () => {
        context.fillRect(5, 5, 1, 1);
        context.clearRect(0, 0, WIDTH, HEIGHT);
      }
    };
  }
};

module.exports = [
  filled('fill', 1.1, OPAQUE, [wholeScreen.ours], (memory) => memory.set(WIDTH, HEIGHT, 1)),
  filled('fill 50 %', 1.7, HALF, [wholeScreen.ours], (memory) => memory.set(WIDTH, HEIGHT, 1)),
  cleared,
  filled('200 rectangles', 4.5, OPAQUE, many, (memory) => memory.set(60, 40, 200)),
  filled('200 rectangles 50 %', 2.7, HALF, many, (memory) => memory.set(60, 40, 200))
];
