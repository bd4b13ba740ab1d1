'use strict';

// The page of settings, with a preview of what they change.

const { dateText, timeText } = require('../clock');
const { rounded } = require('../shapes');
const { choices } = require('../settings');
const { accents, colors, margin, screen } = require('../theme');
const { drawClock, drawKeyHint, drawTile } = require('./parts');

const lines = choices.concat([{ title: 'Restore defaults', hint: 'Your list is kept' }]);
const line = { top: 150, pitch: 84, width: 740, height: 72, radius: 16 };
const preview = { x: 860, y: 150, width: 356, height: 408 };

class SettingsPage {
  constructor(app) {
    this.app = app;
    this.line = 0;
  }

  handleKey(key) {
    const steps = { left: -1, right: 1, enter: 1 };
    if (key === 'up') this.line = Math.max(0, this.line - 1);
    else if (key === 'down') this.line = Math.min(lines.length - 1, this.line + 1);
    else if (key === 'back' || key === 'blue') this.app.close();
    else if (lines[this.line].key && steps[key]) this.change(steps[key]);
    else if (key === 'enter') this.app.settings.reset();
    this.app.settingsChanged();
  }

  change(direction) {
    this.app.settings.step(lines[this.line].key, direction);
  }

  draw(pen) {
    pen.place(this.app.backdrop, 0, 0);
    pen.faded(0.82, () => pen.fill(colors.background, 0, 0, screen.width, screen.height));
    pen.text('title', colors.text, 'Settings', margin.x, 108);
    drawClock(pen, this.app);
    lines.forEach((each, index) => this.drawLine(pen, each, index));
    this.drawPreview(pen);
    this.drawStarts(pen);
    drawKeyHint(pen, '← →  change     ↑ ↓  choose     Back  home');
  }

  drawLine(pen, each, index) {
    const y = line.top + index * line.pitch;
    const isFocused = index === this.line;
    const accent = this.app.settings.accent;
    const box = rounded(
      isFocused ? colors.raised : colors.panel,
      line.width,
      line.height,
      line.radius
    );
    pen.place(box, margin.x, y);
    if (isFocused) pen.place(rounded(accent, 6, 40, 3), margin.x + 14, y + 16);
    pen.text('strong', colors.text, each.title, margin.x + 36, y + 31);
    pen.text('small', colors.quiet, each.hint, margin.x + 36, y + 55);
    if (each.key) this.drawValue(pen, each, margin.x + line.width - 32, y + 43, isFocused);
  }

  drawValue(pen, each, right, y, isFocused) {
    const value = this.app.settings.get(each.key);
    const width = 150;
    const center = right - 18 - width / 2;
    if (isFocused) {
      pen.text('strong', this.app.settings.accent, '‹', right - width - 36, y, 'left');
      pen.text('strong', this.app.settings.accent, '›', right, y, 'right');
    }
    if (each.key !== 'accent') {
      pen.text('strong', colors.text, value, center, y, 'center');
      return;
    }
    const left = center - (pen.widthOf('strong', value) + 30) / 2;
    pen.place(rounded(accents[value], 18, 18, 9), left, y - 16);
    pen.text('strong', colors.text, value, left + 30, y);
  }

  drawPreview(pen) {
    const { settings, tiles } = this.app;
    const { x, y, width, height } = preview;
    const center = x + width / 2;
    const now = this.app.now();
    const item = this.app.home.item;
    pen.place(rounded(colors.panel, width, height, 20), x, y);
    pen.text('hero', colors.text, timeText(now, settings.get('clock')), center, y + 66, 'center');
    pen.text('small', colors.quiet, dateText(now), center, y + 96, 'center');
    const shown = settings.get('titles') === 'Shown';
    drawTile(pen, tiles.get(item.id), center, y + (shown ? 242 : 254), 1, settings.accent);
    if (!shown) return;
    const title = pen.shorten('small', item.title, width - 40);
    pen.text('small', colors.text, title, center, y + 392, 'center');
  }

  drawStarts(pen) {
    const { starts, previousStart } = this.app.settings;
    const times = starts === 1 ? 'This is the first start' : `This is start number ${starts}`;
    const style = this.app.settings.get('clock');
    const before = previousStart
      ? `, the one before was on ${dateText(previousStart)}, ${timeText(previousStart, style)}`
      : '';
    pen.text('small', colors.quiet, `${times}${before}`, margin.x, screen.height - margin.y - 6);
  }
}

module.exports = { SettingsPage };
