'use strict';

const COUNT = 60;
const SAMPLES = [
  'The quick brown fox jumps over the lazy dog, 123',
  'Élève de l’été, où le cœur à la fenêtre s’éprend',
  'Zwölf Boxkämpfer jagen Viktor quer über den Deich',
  'El pingüino Wenceslao hizo kilómetros bajo exhau',
  'Høj bly gom vandt fræk sexquiz på wc i Århus nu',
  'Příliš žluťoučký kůň úpěl ďábelské ódy v noci tu'
];

const indices = Array.from({ length: COUNT }, (_, i) => i);
const lines = indices.map((i) => `${SAMPLES[i % SAMPLES.length].slice(0, 42)} ${i}`);
const x = (i) => (i % 2) * 640 + 10;
const y = (i) => Math.floor(i / 2) * 24 + 20;

/** textOf(line, frame) */
function text(name, aim, textOf) {
  return {
    name,
    aim,
    tolerance: 0.5,
    ours: ({ newCanvas, font }) => {
      const canvas = newCanvas();
      canvas.setFont(font);
      canvas.setColor({ r: 240, g: 240, b: 240, a: 255 });
      return {
        canvas,
        frame: (frame) => {
          for (const i of indices) canvas.drawText(textOf(i, frame), x(i), y(i));
        }
      };
    },
    peer: ({ newContext, fontName }) => {
      const context = newContext();
      context.font = fontName;
      context.fillStyle = 'rgb(240, 240, 240)';
      return {
        context,
        frame: (frame) => {
          for (const i of indices) context.fillText(textOf(i, frame), x(i), y(i));
        }
      };
    }
  };
}

const measured = {
  name: 'measuring 60 lines',
  aim: 10,
  drawsNothing: true,
  ours: ({ newCanvas, font }) => {
    const canvas = newCanvas();
    canvas.setFont(font);
    return {
      canvas,
      frame: () => {
        for (const line of lines) canvas.measureText(line);
      }
    };
  },
  peer: ({ newContext, fontName }) => {
    const context = newContext();
    context.font = fontName;
    return {
      context,
      frame: () => {
        for (const line of lines) context.measureText(line);
      }
    };
  }
};

module.exports = [
  text('60 lines of text', 1.9, (i) => lines[i]),
  text('60 changing lines', 1.8, (i, frame) => `${frame % 100000} ${lines[i]}`),
  measured
];
