'use strict';

const { HEIGHT, WIDTH } = require('../contestants');

const COUNT = 40;
const indices = Array.from({ length: COUNT }, (_, i) => i);
const titles = indices.map((i) => `Film no. ${i} – Été`);
const tileX = (i) => 40 + (i % 8) * 152;
const tileY = (i) => 60 + Math.floor(i / 8) * 126;
const FOCUS = { r: 255, g: 200, b: 40, a: 255 };
const TEXT = { r: 240, g: 240, b: 240, a: 255 };
const BAR = { r: 0, g: 0, b: 0, a: 128 };

/** A background, 40 tiles that are scaled, their titles, the focus, a bar and the clock. */
function screen(name, aim, offsetOf) {
  return {
    name,
    aim,
    tolerance: 0.4,
    limit: (memory) => {
      memory.copy(WIDTH, HEIGHT, 1);
      memory.copy(144, 96, COUNT);
    },
    ours: async ({ newCanvas, pictures, font }) => {
      const canvas = newCanvas();
      const [background] = await pictures.get('screen');
      const tiles = await pictures.get('tile');
      const to = { x: 0, y: 0, w: 144, h: 96 };
      const part = { x: 0, y: 0, w: 320, h: 213 };
      canvas.setFont(font);
      return {
        canvas,
        frame: (frame) => {
          const shift = offsetOf(frame);
          canvas.compose(background, 0, 0);
          canvas.setColor(TEXT);
          for (const i of indices) {
            to.x = tileX(i) - shift;
            to.y = tileY(i);
            canvas.composeScaled(tiles[i], to, part);
            canvas.drawText(titles[i], to.x, to.y + 118);
          }
          canvas.setColor(FOCUS);
          canvas.drawRect(tileX(10) - shift - 1, tileY(10) - 1, 146, 98);
          canvas.setColor(BAR);
          canvas.fillRect(0, 0, WIDTH, 48);
          canvas.setColor(TEXT);
          canvas.drawText(`20:${10 + (frame % 50)}`, 1180, 34);
        }
      };
    },
    peer: async ({ newContext, pictures, fontName }) => {
      const context = newContext();
      const [background] = await pictures.get('screen');
      const tiles = await pictures.get('tile');
      context.font = fontName;
      context.lineWidth = 1;
      context.strokeStyle = 'rgb(255, 200, 40)';
      return {
        context,
        frame: (frame) => {
          const shift = offsetOf(frame);
          context.drawImage(background, 0, 0);
          context.fillStyle = 'rgb(240, 240, 240)';
          for (const i of indices) {
            context.drawImage(tiles[i], tileX(i) - shift, tileY(i), 144, 96);
            context.fillText(titles[i], tileX(i) - shift, tileY(i) + 118);
          }
          context.strokeRect(tileX(10) - shift - 0.5, tileY(10) - 0.5, 145, 97);
          context.fillStyle = 'rgba(0, 0, 0, 0.5)';
          context.fillRect(0, 0, WIDTH, 48);
          context.fillStyle = 'rgb(240, 240, 240)';
          context.fillText(`20:${10 + (frame % 50)}`, 1180, 34);
        }
      };
    }
  };
}

module.exports = [
  screen('home screen', 3.7, () => 0),
  screen('home screen scrolling', 3.7, (frame) => ((frame * 8) % 160) - 8)
];
