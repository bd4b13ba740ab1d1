'use strict';

const { HEIGHT, WIDTH } = require('../contestants');

const COUNT = 40;

/** Where picture i of a grid of 8 by 5 goes, overlapping its neighbours where it is large. */
const gridX = (i, width) => (i % 8) * Math.floor((WIDTH - width) / 7);
const gridY = (i, height) => Math.floor(i / 8) * Math.floor((HEIGHT - height) / 4);
const indices = Array.from({ length: COUNT }, (_, i) => i);

const whole = (image) => ({ x: 0, y: 0, w: image.getSize().w, h: image.getSize().h });

/** 40 pictures in their own size. */
function blit(name, aim, set, opacity) {
  return {
    name,
    aim,
    limit: (memory) => memory.copy(160, 240, COUNT),
    ours: async ({ newCanvas, pictures }) => {
      const canvas = newCanvas();
      const images = await pictures.get(set);
      canvas.setOpacity(opacity);
      return {
        canvas,
        frame: () => {
          for (const i of indices) canvas.compose(images[i], gridX(i, 160), gridY(i, 240));
        }
      };
    },
    peer: async ({ newContext, pictures }) => {
      const context = newContext();
      const images = await pictures.get(set);
      context.globalAlpha = opacity;
      return {
        context,
        frame: () => {
          for (const i of indices) context.drawImage(images[i], gridX(i, 160), gridY(i, 240));
        }
      };
    }
  };
}

/** 40 pictures in another size, the same in every frame. */
function scaled(name, aim, set, w, h) {
  const places = indices.map((i) => ({ x: gridX(i, w), y: gridY(i, h), w, h }));
  return {
    name,
    aim,
    limit: (memory) => memory.copy(w, h, COUNT),
    ours: async ({ newCanvas, pictures }) => {
      const canvas = newCanvas();
      const images = await pictures.get(set);
      const parts = images.map(whole);
      return {
        canvas,
        frame: () => {
          for (const i of indices) canvas.composeScaled(images[i], places[i], parts[i]);
        }
      };
    },
    peer: async ({ newContext, pictures }) => {
      const context = newContext();
      const images = await pictures.get(set);
      return {
        context,
        frame: () => {
          for (const i of indices) context.drawImage(images[i], places[i].x, places[i].y, w, h);
        }
      };
    }
  };
}

const background = {
  name: 'scale background',
  aim: 7,
  limit: (memory) => memory.copy(WIDTH, HEIGHT, 1),
  ours: async ({ newCanvas, pictures }) => {
    const canvas = newCanvas();
    const [image] = await pictures.get('large');
    const to = { x: 0, y: 0, w: WIDTH, h: HEIGHT };
    const part = whole(image);
    return { canvas, frame: () => canvas.composeScaled(image, to, part) };
  },
  peer: async ({ newContext, pictures }) => {
    const context = newContext();
    const [image] = await pictures.get('large');
    return { context, frame: () => context.drawImage(image, 0, 0, WIDTH, HEIGHT) && undefined };
  }
};

/** A size that doesn't come again for 49,000 frames. */
const zoomWidth = (i) => 120 + (i % 181);
const zoomHeight = (i) => 180 + ((i * 7) % 271);

const zoom = {
  name: 'zoom',
  aim: 1.6,
  ours: async ({ newCanvas, pictures }) => {
    const canvas = newCanvas();
    const [image] = await pictures.get('poster');
    const part = whole(image);
    const to = { x: 200, y: 100, w: 0, h: 0 };
    return {
      canvas,
      frame: (i) => {
        to.w = zoomWidth(i);
        to.h = zoomHeight(i);
        canvas.composeScaled(image, to, part);
      }
    };
  },
  peer: async ({ newContext, pictures }) => {
    const context = newContext();
    const [image] = await pictures.get('poster');
    return {
      context,
      frame: (i) => {
        context.drawImage(image, 200, 100, zoomWidth(i), zoomHeight(i));
      }
    };
  }
};

/** Pictures that were never drawn, but are decoded. */
const firstDraw = {
  name: 'first draw of 40',
  aim: 1.4,
  single: true,
  ours: async ({ newCanvas, load }) => {
    const { filesOf } = require('../pictures');
    const canvas = newCanvas();
    let images = [];
    return {
      canvas,
      prepare: async () => {
        images.forEach((image) => image.release());
        images = await Promise.all(filesOf('poster').map(load));
      },
      frame: () => {
        for (const i of indices) {
          const to = { x: gridX(i, 144), y: gridY(i, 216), w: 144, h: 216 };
          canvas.composeScaled(images[i], to, { x: 0, y: 0, w: 320, h: 480 });
        }
      }
    };
  },
  peer: async ({ newContext, load, settle }) => {
    const { filesOf } = require('../pictures');
    const context = newContext();
    let images = [];
    return {
      context,
      prepare: async () => {
        images = await Promise.all(filesOf('poster').map(load));
        for (const image of images) context.drawImage(image, 0, 0, 1, 1, 0, 0, 1, 1);
        settle(context);
      },
      frame: () => {
        for (const i of indices) {
          context.drawImage(images[i], gridX(i, 144), gridY(i, 216), 144, 216);
        }
      }
    };
  }
};

const ANGLE = 0.5;

const rotated = {
  name: 'rotation',
  aim: 2.6,
  ours: async ({ newCanvas, pictures }) => {
    const canvas = newCanvas();
    const [image] = await pictures.get('poster');
    canvas.setRotation((ANGLE * 180) / Math.PI);
    return { canvas, frame: () => canvas.compose(image, 480, 120) };
  },
  peer: async ({ newContext, pictures }) => {
    const context = newContext();
    const [image] = await pictures.get('poster');
    context.translate(640, 360);
    context.rotate(ANGLE);
    return { context, frame: () => context.drawImage(image, -160, -240) && undefined };
  }
};

const modes = [
  ['SRC_ATOP', 'source-atop'],
  ['SRC_IN', 'source-in'],
  ['SRC_OUT', 'source-out'],
  ['DST_OVER', 'destination-over'],
  ['DST_ATOP', 'destination-atop'],
  ['DST_IN', 'destination-in'],
  ['DST_OUT', 'destination-out'],
  ['ADD', 'lighter'],
  ['XOR', 'xor'],
  ['SRC', 'copy'],
  ['SRC_OVER', 'source-over']
];

/**
 * 40 half-transparent pictures, without overlap. Where the peers' mode reaches beyond the picture
 * a clip holds it there.
 */
function mode([ours, theirs]) {
  const unbounded = /-in$|source-out|destination-atop|copy/.test(theirs);
  const x = (i) => (i % 8) * 160;
  const y = (i) => Math.floor(i / 8) * 144;
  return {
    name: `mode ${ours}`,
    aim: ours === 'SRC_OVER' || ours === 'SRC' ? undefined : 2.5,
    ours: async ({ newCanvas, pictures }) => {
      const canvas = newCanvas();
      const images = await pictures.get('faded');
      const [under] = await pictures.get('screen');
      canvas.compose(under, 0, 0);
      canvas.setPorterDuff(ours);
      const part = { x: 0, y: 0, w: 160, h: 144 };
      return {
        canvas,
        frame: () => {
          for (const i of indices) canvas.compose(images[i], x(i), y(i), part);
        }
      };
    },
    peer: async ({ newContext, pictures }) => {
      const context = newContext();
      const images = await pictures.get('faded');
      const [under] = await pictures.get('screen');
      context.drawImage(under, 0, 0);
      context.globalCompositeOperation = theirs;
      const draw = (i) => context.drawImage(images[i], 0, 0, 160, 144, x(i), y(i), 160, 144);
      const drawClipped = (i) => {
        context.save();
        context.beginPath();
        context.rect(x(i), y(i), 160, 144);
        context.clip();
        draw(i);
        context.restore();
      };
      return { context, frame: () => indices.forEach(unbounded ? drawClipped : draw) };
    }
  };
}

module.exports = [
  blit('blit opaque', 1.3, 'small', 1),
  blit('blit rounded', 1.3, 'rounded', 1),
  blit('blit gradient', 1.25, 'faded', 1),
  blit('blit opacity 50 %', 1.7, 'small', 0.5),
  scaled('scale to half', 1.3, 'poster', 160, 240),
  scaled('scale to 1 / 2.22', 8, 'poster', 144, 216),
  scaled('scale up', 9, 'small', 176, 264),
  background,
  zoom,
  firstDraw,
  rotated
].concat(modes.map(mode));
