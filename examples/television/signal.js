'use strict';

// The picture where nothing is received.

const { colors, screen } = require('../home/theme');

const bars = ['#6f7480', '#6f6f3a', '#3a6f74', '#3a6f45', '#6f3f70', '#703a3f', '#3a4370'];

/** reason: what the tuner tells, or true where it is the player that is missing. */
function drawNoSignal(pen, channel, reason) {
  const width = screen.width / bars.length;
  pen.fill(colors.background, 0, 0, screen.width, screen.height);
  bars.forEach((color, index) => {
    const left = Math.round(index * width);
    pen.fill(color, left, 0, Math.round((index + 1) * width) - left, 420);
  });
  const text = reason === true ? 'This channel can’t be played' : reason;
  pen.text('hero', colors.text, text, screen.width / 2, 510, 'center');
  const hint = `Channel ${channel.number}, ${channel.name}: check the aerial and its cable.`;
  pen.text('body', colors.quiet, hint, screen.width / 2, 560, 'center');
}

module.exports = { drawNoSignal };
