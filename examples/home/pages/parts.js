'use strict';

// What more than one page draws.

const { dateText, timeText } = require('../clock');
const { frame, rounded, shadow } = require('../shapes');
const { colors, margin, poster, screen } = require('../theme');

const frameGap = 3;
const frameWidth = 3;
const shadowReach = 24;

function drawClock(pen, app) {
  const now = app.now();
  const right = screen.width - margin.x;
  const time = timeText(now, app.settings.get('clock'));
  pen.text('clock', colors.text, time, right, margin.y + 26, 'right');
  const left = right - pen.widthOf('clock', time) - 18;
  pen.text('small', colors.quiet, dateText(now), left, margin.y + 25, 'right');
}

/** A tile about a centre; focus from 0 (at rest) to 1 (largest, framed). */
function drawTile(pen, tile, centerX, centerY, focus, accent) {
  const { rest, focus: largest } = poster;
  const width = rest.w + (largest.w - rest.w) * focus;
  const height = rest.h + (largest.h - rest.h) * focus;
  const [left, top] = [centerX - width / 2, centerY - height / 2];
  if (focus === 0) {
    pen.place(tile.rest, left, top);
    return;
  }
  const around = (canvas, reach) =>
    pen.stretch(canvas, left - reach, top - reach, width + 2 * reach, height + 2 * reach);
  const outer = frameGap + frameWidth;
  const radius = Math.round((poster.radius * largest.w) / poster.full.w) + outer;
  const size = [largest.w + 2 * outer, largest.h + 2 * outer];
  pen.faded(focus, () => {
    around(shadow(largest.w, largest.h, 10, shadowReach), shadowReach);
    around(frame(accent, size[0], size[1], radius, frameWidth), outer);
  });
  pen.stretch(tile.full, left, top, width, height);
}

/** A button with its top left corner at x, y; gives its width. */
function drawButton(pen, label, x, y, isFocused, accent) {
  const height = 52;
  const width = pen.widthOf('strong', label) + 56;
  pen.place(rounded(isFocused ? accent : colors.raised, width, height, height / 2), x, y);
  const ink = isFocused ? colors.onAccent : colors.text;
  pen.text('strong', ink, label, x + width / 2, y + 33, 'center');
  return width;
}

/** What the keys do here, in the lower right corner. */
function drawKeyHint(pen, text) {
  const [right, bottom] = [screen.width - margin.x, screen.height - margin.y - 6];
  pen.text('small', colors.quiet, text, right, bottom, 'right');
}

module.exports = { drawButton, drawClock, drawKeyHint, drawTile };
