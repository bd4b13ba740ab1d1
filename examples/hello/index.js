'use strict';

// The smallest application: text and shapes on the screen.
//
//   node examples/hello [SECONDS]

const quiravent = require('quiravent');
const { fontFile } = require('../fonts');

// The screen is a canvas of 1280 by 720 pixels, whatever the television's own resolution.
const screen = quiravent.graphicServices.getTargetCanvas();

function drawShapes() {
  screen.setColor('#0b1020');
  screen.fillRect(0, 0, 1280, 720);

  // A colour is a CSS name or a hexadecimal number. With eight digits the last two are the opacity:
  // 80 is about half.
  screen.setColor('#ffb454');
  screen.drawEllipse('fill', 1030, 250, 110, 110, 0, 360);
  screen.setColor('#5b9dff80');
  screen.drawEllipse('fill', 930, 340, 140, 140, 0, 360);
  screen.setColor('white');
  screen.drawEllipse('outline', 980, 310, 230, 230, 150, 330);

  // Arguments may be given by name, too.
  screen.setColor('#4fd1c5');
  screen.fillRect({ x: 100, y: 430, w: 420, h: 8 });
  screen.drawRect({ x: 60, y: 60, w: 1160, h: 600 });
  screen.drawLine({ x1: 60, y1: 560, x2: 1219, y2: 560 });
}

function drawText(font) {
  // A canvas needs a font before it draws, measures or aligns text.
  screen.setFont(font);
  screen.setTextAlign('left', 'baseline');
  screen.setColor('white');
  screen.drawText('Olá, televisão!', 100, 400);

  // How wide a text gets is known before it is drawn.
  const words = 'Grüße aus dem Wohnzimmer';
  const width = screen.measureText(words).width;
  screen.setColor('#a9b4c6');
  screen.drawText(words, 100, 516);
  screen.setColor('#4fd1c5');
  screen.fillRect(100, 532, width, 3);

  screen.setColor('white');
  screen.setTextAlign('center', 'middle');
  screen.drawText('1280 × 720', 640, 610);
}

// Fonts are loaded in the background; the callback gets an error or the font.
quiravent.graphicServices.loadFont(fontFile('InterDisplay-Bold'), 56, (error, font) => {
  if (error) throw new Error(error.message);
  drawShapes();
  drawText(font);

  // Nothing is seen until it is flushed, and then all of it at once: a half-drawn picture never
  // shows.
  screen.flush();

  // The picture is on the screen as long as the application runs.
  const seconds = Number(process.argv[2] || 5);
  setTimeout(() => font, seconds * 1000);
});
