'use strict';

const { rounded } = require('../shapes');
const { colors, screen } = require('../theme');

const bar = { width: 480, height: 12 };

/** The page while pictures are loaded. */
function drawLoading(pen, accent, done, total) {
  const left = (screen.width - bar.width) / 2;
  const top = screen.height / 2 + 24;
  pen.fill(colors.background, 0, 0, screen.width, screen.height);
  pen.text('hero', colors.text, 'quiravent', screen.width / 2, top - 48, 'center');
  pen.place(rounded(colors.raised, bar.width, bar.height, bar.height / 2), left, top);
  // The whole bar is drawn, and the clip shows as much of it as is loaded.
  pen.clipped(left, top, Math.round((bar.width * done) / total), bar.height, () =>
    pen.place(rounded(accent, bar.width, bar.height, bar.height / 2), left, top)
  );
  const text = done < total ? `Loading pictures, ${done} of ${total}` : 'Ready';
  pen.text('body', colors.quiet, text, screen.width / 2, top + 56, 'center');
}

module.exports = { drawLoading };
