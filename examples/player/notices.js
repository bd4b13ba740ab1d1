'use strict';

// What else is drawn over a film.

const { rounded } = require('../home/shapes');
const { colors, margin, screen } = require('../home/theme');
const { timeText } = require('./transport');

const center = { x: screen.width / 2, y: screen.height / 2 };
const dots = 12;
const turn = 1200; // ms

/** Dots in a circle, of which the brightest goes round; and how far the loading is. */
function drawSpinner(pen, accent, text) {
  const first = Math.floor((dots * (Date.now() % turn)) / turn);
  for (let index = 0; index < dots; index++) {
    const angle = (2 * Math.PI * (first - index)) / dots;
    const [x, y] = [center.x + 40 * Math.sin(angle), center.y - 40 * Math.cos(angle)];
    pen.faded(1 - index / dots, () => pen.place(rounded(accent, 12, 12, 6), x - 6, y - 6));
  }
  pen.text('body', colors.text, text, center.x, center.y + 92, 'center');
}

/** In place of the film. */
function drawMessage(pen, text, reason) {
  const width = Math.max(pen.widthOf('title', text), 360) + 96;
  const left = center.x - width / 2;
  pen.faded(0.9, () => pen.place(rounded(colors.panel, width, 150, 24), left, center.y - 75));
  pen.text('title', colors.text, text, center.x, center.y + (reason ? -6 : 2), 'center');
  pen.text('body', colors.quiet, reason || 'Back  leave', center.x, center.y + 40, 'center');
}

/** That this isn't the film, and for how long. */
function drawAdBadge(pen, time, isPaused, accent) {
  const left = timeText(Math.max(0, time.end - time.now) + 999);
  const text = `Advertisement  ·  ${isPaused ? 'paused' : left}`;
  const width = pen.widthOf('strong', text) + 48;
  pen.faded(0.85, () => pen.place(rounded(colors.panel, width, 44, 22), margin.x, margin.y));
  pen.text('strong', colors.text, text, margin.x + 24, margin.y + 29);
  if (time.end === 0) return;
  const whole = screen.width - 2 * margin.x;
  const y = screen.height - margin.y - 6;
  pen.faded(0.6, () => pen.place(rounded(colors.panel, whole, 6, 3), margin.x, y));
  pen.clipped(margin.x, y, Math.round((whole * time.now) / time.end), 6, () =>
    pen.place(rounded(accent, whole, 6, 3), margin.x, y)
  );
}

const volumes = ['Sound off', 'Volume: normal', 'Volume: loud'];

function drawVolume(pen, volume, accent) {
  const width = pen.widthOf('strong', volumes[volume]) + 112;
  const left = screen.width - margin.x - width;
  const y = 150;
  pen.faded(0.9, () => pen.place(rounded(colors.panel, width, 52, 26), left, y));
  pen.text('strong', colors.text, volumes[volume], left + 24, y + 33);
  for (let step = 1; step <= 2; step++) {
    const color = step <= volume ? accent : colors.raised;
    pen.fill(color, left + width - 64 + step * 14, y + 38 - step * 10, 8, step * 10);
  }
}

module.exports = { drawAdBadge, drawMessage, drawSpinner, drawVolume };
