'use strict';

// What is drawn over the picture of a channel.

const { timeText } = require('../home/clock');
const { fade, rounded } = require('../home/shapes');
const { colors, margin, screen } = require('../home/theme');

const banner = { x: margin.x, y: 500, width: screen.width - 2 * margin.x, height: 176 };
const list = { x: margin.x, y: 96, width: 460, pitch: 92 };
const volume = { x: screen.width - 96, y: 180, width: 12, height: 320 };

function panel(pen, x, y, width, height) {
  pen.faded(0.92, () => pen.place(rounded(colors.panel, width, height, 24), x, y));
}

function timesOf(app, programme) {
  const style = app.settings.get('clock');
  return `${timeText(programme.start, style)} – ${timeText(programme.end, style)}`;
}

/** How much of a programme is over, 0 to 1. */
function elapsed(programme, now) {
  const part = (now - programme.start) / (programme.end - programme.start);
  return Math.max(0, Math.min(1, part));
}

function drawProgress(pen, app, programme, x, y, width) {
  const done = Math.round(width * elapsed(programme, app.now()));
  pen.place(rounded(colors.raised, width, 6, 3), x, y);
  if (done >= 6) pen.place(rounded(app.settings.accent, done, 6, 3), x, y);
}

function drawBanner(pen, app, channel, captions) {
  const { x, width, height } = banner;
  // Captions stand at the bottom, so the banner leaves it to them.
  const y = captions ? margin.y : banner.y;
  const left = x + 176;
  const inner = width - 176 - 40;
  if (!captions) pen.place(fade('#000000', screen.width, 300, 0, 190), 0, screen.height - 300);
  panel(pen, x, y, width, height);
  pen.text('hero', app.settings.accent, String(channel.number), x + 88, y + 104, 'center');
  pen.text('heading', colors.quiet, channel.name, left, y + 44);
  const state = channel.captions === false ? 'No captions' : `Captions ${captions ? 'on' : 'off'}`;
  pen.text('small', colors.quiet, state, x + width - 40, y + 42, 'right');
  const title = pen.shorten('title', channel.present.name, inner);
  pen.text('title', colors.text, title, left, y + 90);
  drawProgress(pen, app, channel.present, left, y + 106, inner);
  const now = `${timesOf(app, channel.present)}   ${channel.present.text}`;
  pen.text('small', colors.quiet, pen.shorten('small', now, inner / 2), left, y + 146);
  const next = `Next: ${channel.following.name}, ${timesOf(app, channel.following)}`;
  const shortened = pen.shorten('small', next, inner / 2 - 20);
  pen.text('small', colors.quiet, shortened, x + width - 40, y + 146, 'right');
}

function drawList(pen, app, channels, focus) {
  const { x, y, width, pitch } = list;
  panel(pen, x, y, width, channels.length * pitch + 24);
  channels.forEach((channel, index) => {
    const top = y + 12 + index * pitch;
    const isFocused = index === focus;
    const accent = app.settings.accent;
    if (isFocused) pen.place(rounded(accent, width - 24, pitch - 8, 16), x + 12, top + 4);
    const ink = isFocused ? colors.onAccent : colors.text;
    const quiet = isFocused ? colors.onAccent : colors.quiet;
    pen.text('title', ink, String(channel.number), x + 60, top + 58, 'center');
    pen.text('heading', ink, channel.name, x + 110, top + 40);
    const title = pen.shorten('small', channel.present.name, width - 150);
    pen.text('small', quiet, title, x + 110, top + 66);
  });
}

function drawNumber(pen, digits) {
  const width = 60 + 30 * digits.length;
  panel(pen, screen.width - margin.x - width, margin.y + 20, width, 84);
  const x = screen.width - margin.x - width / 2;
  pen.text('hero', colors.text, digits, x, margin.y + 78, 'center');
}

/** level: 0 to 20, of which 10 is the broadcast's own loudness. */
function drawVolume(pen, app, level) {
  const { x, y, width, height } = volume;
  panel(pen, x - 24, y - 28, width + 48, height + 84);
  pen.place(rounded(colors.raised, width, height, width / 2), x, y);
  const filled = Math.round((height * level) / 20);
  if (filled >= width)
    pen.place(rounded(app.settings.accent, width, filled, width / 2), x, y + height - filled);
  const text = level === 0 ? 'Mute' : String(level);
  pen.text('small', colors.text, text, x + width / 2, y + height + 34, 'center');
}

/** What stands where a channel has sound only. */
function drawRadio(pen, app, channel) {
  pen.fill(colors.background, 0, 0, screen.width, screen.height);
  pen.text('hero', colors.text, channel.name, screen.width / 2, 300, 'center');
  pen.text('heading', app.settings.accent, channel.present.name, screen.width / 2, 350, 'center');
}

module.exports = { drawBanner, drawList, drawNumber, drawRadio, drawVolume };
