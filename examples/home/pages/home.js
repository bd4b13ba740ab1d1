'use strict';

// The home page: what the focused item is about, and below it rows of posters.

const { factsOf } = require('../catalogue');
const { rounded, fade } = require('../shapes');
const { colors, margin, poster, screen } = require('../theme');
const { drawClock, drawTile } = require('./parts');

const visibleColumns = 7;
const rowPitch = 310;
const contentTop = 72;
// Where the first row stands while the billboard above it shows, and where the focused row does
// when the page has moved on.
const firstRowTop = 318;
const focusedRowTop = 384;
const posterTop = 46;

class HomePage {
  /** app: settings, tiles, rows, now; see app.js. focus: id of the item to begin with, if any. */
  constructor(app, focus) {
    this.app = app;
    this.row = 0;
    this.columns = [];
    this.inHeader = false;
    if (focus) this.focusItem(focus);
  }

  focusItem(id) {
    const isIt = (item) => item.id === id;
    const row = this.app.rows.findIndex((each) => each.items.some(isIt));
    if (row < 0) return;
    this.row = row;
    this.columns[row] = this.app.rows[row].items.findIndex(isIt);
  }

  /** The focused column of a row. The viewer's own list may have become shorter. */
  columnOf(row) {
    return Math.min(this.columns[row] || 0, this.app.rows[row].items.length - 1);
  }

  get item() {
    return this.app.rows[this.row].items[this.columnOf(this.row)];
  }

  handleKey(key) {
    const moves = { left: [-1, 0], right: [1, 0], up: [0, -1], down: [0, 1] };
    if (moves[key]) this.move(moves[key][0], moves[key][1]);
    else if (key === 'enter') this.open();
    else if (key === 'play' || key === 'playPause') this.app.play(this.item);
    else if (key === 'blue') this.app.openSettings();
    else if (key === 'back') this.goToStart();
  }

  move(right, down) {
    if (this.inHeader) {
      this.inHeader = down !== 1;
    } else if (down === -1 && this.row === 0) {
      this.inHeader = true;
    } else if (down !== 0) {
      this.row = Math.min(this.row + down, this.app.rows.length - 1);
    } else {
      const last = this.app.rows[this.row].items.length - 1;
      this.columns[this.row] = Math.max(0, Math.min(this.columnOf(this.row) + right, last));
    }
    this.app.rememberFocus(this.item.id);
  }

  open() {
    if (this.inHeader) this.app.openSettings();
    else this.app.openDetails(this.item);
  }

  goToStart() {
    this.inHeader = false;
    this.row = 0;
    this.columns[0] = 0;
    this.app.rememberFocus(this.item.id);
  }

  /** Called when the rows have changed, as the viewer's own list may have come or gone. */
  rowsChanged() {
    this.row = Math.min(this.row, this.app.rows.length - 1);
  }

  draw(pen, motion) {
    const target = this.row === 0 ? 0 : firstRowTop + this.row * rowPitch - focusedRowTop;
    const scroll = motion.value('scroll', target);
    const billboard = Math.max(0, 1 - scroll / 140);
    pen.place(this.app.backdrop, 0, 0);
    pen.faded(Math.min(1, scroll / 200) * 0.65, () =>
      pen.fill(colors.background, 0, 0, screen.width, screen.height)
    );
    pen.clipped(0, contentTop, screen.width, screen.height - contentTop, () => {
      pen.faded(billboard, () => this.drawBillboard(pen, scroll));
      this.app.rows.forEach((row, index) => this.drawRow(pen, motion, row, index, scroll));
    });
    // The next row only shows that it is there.
    pen.faded(billboard, () =>
      pen.place(fade(colors.background, screen.width, 110, 0, 235), 0, screen.height - 110)
    );
    this.drawHeader(pen, motion, billboard);
  }

  /** nameShown: opacity of the application's name, which leaves its place to the first row's. */
  drawHeader(pen, motion, nameShown) {
    const accent = this.app.settings.accent;
    const y = margin.y;
    pen.faded(nameShown, () => {
      pen.place(rounded(accent, 12, 28, 6), margin.x, y + 4);
      pen.text('clock', colors.text, 'quiravent', margin.x + 24, y + 26);
    });
    drawClock(pen, this.app);
    const label = 'Settings';
    const width = pen.widthOf('small', label) + 66;
    const left = (screen.width - width) / 2;
    const chosen = motion.value('header', this.inHeader ? 1 : 0);
    pen.faded(0.85, () => pen.place(rounded(colors.raised, width, 38, 19), left, y - 1));
    pen.faded(chosen, () => pen.place(rounded(accent, width, 38, 19), left, y - 1));
    pen.place(rounded('#5b9dff', 14, 14, 7), left + 20, y + 11);
    pen.text('small', this.inHeader ? colors.onAccent : colors.text, label, left + 44, y + 24);
  }

  /** The title and description of the focused item, while the first row is at the bottom. */
  drawBillboard(pen, scroll) {
    const item = this.item;
    const x = margin.x;
    const y = 146 - scroll;
    pen.text('hero', colors.text, pen.shorten('hero', item.title, 760), x, y);
    pen.text('strong', this.app.settings.accent, factsOf(item), x, y + 38);
    const lines = pen.wrap('body', item.description, 680, 3);
    pen.lines('body', colors.text, lines, x, y + 76, 29);
  }

  drawRow(pen, motion, row, index, scroll) {
    const top = firstRowTop + index * rowPitch - scroll;
    // A row comes in when half of it has room.
    const shown = Math.max(0, Math.min(1, (690 - top) / 60));
    if (shown === 0 || top < contentTop - rowPitch) return;
    const focused = index === this.row && !this.inHeader;
    const column = this.columnOf(index);
    const target = Math.max(0, column - visibleColumns + 1) * poster.pitch;
    const left = margin.x - motion.value(`scroll ${row.title}`, target);
    pen.faded(shown, () => {
      row.items.forEach((item, at) => {
        const place = { x: left + at * poster.pitch, y: top + posterTop };
        const focus = motion.value(
          `focus ${row.title} ${item.id}`,
          focused && at === column ? 1 : 0
        );
        this.drawItem(pen, item, place, focus);
      });
      // Above the shadow of the largest poster.
      pen.text('heading', colors.text, row.title, margin.x, top + 20);
    });
  }

  drawItem(pen, item, place, focus) {
    const { w, h } = poster.rest;
    if (place.x > screen.width || place.x + w < 0) return;
    // What reaches beyond the edge of the screen only shows that the row goes on.
    const isWhole = place.x >= 0 && place.x + w <= screen.width;
    const { accent } = this.app.settings;
    pen.faded(isWhole ? 1 : 0.5, () =>
      drawTile(pen, this.app.tiles.get(item.id), place.x + w / 2, place.y + h / 2, focus, accent)
    );
    if (isWhole) this.drawCaption(pen, item, place, focus);
  }

  drawCaption(pen, item, place, focus) {
    const { w, h } = poster.rest;
    const { accent, list } = this.app.settings;
    if (list.indexOf(item.id) >= 0) {
      const grown = ((poster.focus.w - w) / 2) * focus;
      const mark = { x: place.x + w - 16 + grown, y: place.y - 8 - grown };
      pen.place(rounded(accent, 24, 24, 12), mark.x, mark.y);
      pen.text('small', colors.onAccent, '✓', mark.x + 12, mark.y + 18, 'center');
    }
    if (this.app.settings.get('titles') !== 'Shown') return;
    const lines = pen.wrap('small', item.title, w + 20, 2);
    const y = place.y + h + 20 + 18 * focus;
    pen.lines('small', focus > 0.5 ? colors.text : colors.quiet, lines, place.x, y, 20);
  }
}

module.exports = { HomePage };
