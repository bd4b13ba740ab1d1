'use strict';

// A viewer in a box: presses keys by itself, the next when the picture after the last has been shown.

const keys = [
  'right right right down right right', // along the rows
  'enter right enter back', // open an item, keep it, back
  'down', // and on
  'blue right right down right back' // settings: another colour, another clock
]
  .join(' ')
  .split(' ');

/** Presses the keys; pause: between them, in milliseconds. Then calls done. */
function playDemo(app, show, pause, done) {
  const press = (index) => {
    if (index === keys.length) {
      done();
      return;
    }
    console.log(`demo: ${keys[index]}`);
    app.handleKey(keys[index]);
    show.update(() => setTimeout(() => press(index + 1), pause));
  };
  show.update(() => setTimeout(() => press(0), pause));
}

module.exports = { playDemo };
