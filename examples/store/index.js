'use strict';

// Values that are still there at the next start: counts its starts, and remembers a name.
//
//   node examples/store [NAME] [SECONDS]

const quiravent = require('quiravent');
const { fontFile } = require('../fonts');

// A store belongs to a context, for which an application takes a name of its own. There is none
// when the device can't open it; then nothing is remembered, and nothing else is wrong.
const store = quiravent.dataServices.getPersistent('examples/store');
const read = (key) => (store ? store.get(key) : undefined);
const write = (key, value) => {
  if (store) store.set(key, value);
};

// Every value comes back as text, and a missing one as undefined.
const starts = Number(read('starts') || 0) + 1;
const previous = read('last start') || 'never';
write('starts', starts);
write('last start', new Date().toISOString());

const name = process.argv[2] || read('name');
write('name', name);

console.log(`start number ${starts}, the one before: ${previous}`);

function drawValues(font) {
  const screen = quiravent.graphicServices.getTargetCanvas();
  screen.setColor('#0b1020');
  screen.fillRect(0, 0, 1280, 720);
  screen.setColor('#4fd1c5');
  screen.fillRect(100, 120, 12, 480);

  screen.setFont(font);
  screen.setTextAlign('left', 'top');
  screen.setColor('white');
  const welcome = starts === 1 ? 'Welcome' : 'Welcome back';
  screen.drawText(name ? `${welcome}, ${name}` : welcome, 150, 120);

  // getAll lists everything that is stored, in the order of the keys.
  const values = store ? store.getAll() : {};
  Object.keys(values).forEach((key, line) => {
    const y = 260 + line * 90;
    screen.setColor('#a9b4c6');
    screen.drawText(key, 150, y);
    screen.setColor('white');
    screen.drawText(values[key], 480, y);
  });
  screen.flush();
}

quiravent.graphicServices.loadFont(fontFile('InterDisplay-Bold'), 44, (error, font) => {
  if (error) throw new Error(error.message);
  drawValues(font);
  setTimeout(() => font, Number(process.argv[3] || 5) * 1000);
});
