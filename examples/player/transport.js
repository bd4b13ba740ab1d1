'use strict';

// The bar that says how far the film is.

const { rounded } = require('../home/shapes');
const { colors, margin, screen } = require('../home/theme');

const middle = 652;
const track = { left: 204, right: 1150, height: 6 };
const width = track.right - track.left;

/** "0:07", "1:02:30" */
function timeText(ms) {
  const seconds = Math.floor(ms / 1000);
  const two = (number) => (number < 10 ? `0${number}` : String(number));
  const minutes = Math.floor(seconds / 60);
  if (minutes < 60) return `${minutes}:${two(seconds % 60)}`;
  return `${Math.floor(minutes / 60)}:${two(minutes % 60)}:${two(seconds % 60)}`;
}

function drawTitle(pen, title) {
  pen.text('title', colors.text, pen.shorten('title', title, 820), margin.x, margin.y + 38);
}

/** The state of playing, in a circle. */
function drawState(pen, playback, accent) {
  const size = 48;
  const [x, y] = [margin.x + size / 2, middle];
  pen.place(rounded(accent, size, size, size / 2), margin.x, y - size / 2);
  if (playback.isPaused || playback.phase === 'suspended') {
    pen.fill(colors.onAccent, x - 8, y - 10, 6, 20);
    pen.fill(colors.onAccent, x + 2, y - 10, 6, 20);
  } else if (playback.speed === 1) {
    pen.text('clock', colors.onAccent, '▶', x + 2, y + 9, 'center');
  } else {
    const sign = playback.speed < 0 ? '◀' : '▶';
    pen.text('small', colors.onAccent, `${sign}${sign}`, x, y + 6, 'center');
  }
}

/** A stretch of the track, from one part of its length to another (0 to 1). */
function drawPart(pen, color, from, to) {
  const { height } = track;
  const [left, right] = [track.left + width * from, track.left + width * to];
  pen.clipped(Math.round(left), middle - height, Math.round(right - left), 2 * height, () =>
    pen.place(rounded(color, width, height, height / 2), track.left, middle - height / 2)
  );
}

function drawTrack(pen, playback, film, accent) {
  const { now, begin, end } = playback.time;
  const partOf = (ms) => (end > begin ? Math.max(0, Math.min(1, (ms - begin) / (end - begin))) : 0);
  pen.place(rounded(colors.raised, width, track.height, 3), track.left, middle - 3);
  playback.buffered.forEach((range) =>
    drawPart(pen, '#56627a', partOf(range.begin), partOf(range.end))
  );
  drawPart(pen, accent, 0, partOf(now));
  if (end > begin) {
    film.breaks.forEach((each) =>
      pen.fill(colors.text, track.left + width * partOf(each.at) - 2, middle - 7, 4, 14)
    );
  }
  pen.place(rounded(colors.text, 20, 20, 10), track.left + width * partOf(now) - 10, middle - 10);
  pen.text('strong', colors.text, timeText(now), track.left - 18, middle + 7, 'right');
  pen.text('strong', colors.quiet, timeText(end), track.right + 18, middle + 7);
}

function drawTransport(pen, playback, film, accent) {
  drawState(pen, playback, accent);
  drawTrack(pen, playback, film, accent);
  const hint = '← →  10 seconds     ↑  languages     Enter  pause     Back  leave';
  pen.text('small', colors.quiet, hint, track.left, middle + 38);
  if (playback.speed !== 1)
    pen.text(
      'strong',
      accent,
      `× ${playback.speed}`,
      screen.width - margin.x,
      middle + 38,
      'right'
    );
}

module.exports = { drawTitle, drawTransport, timeText };
