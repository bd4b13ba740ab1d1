'use strict';

// The panel over the home page that tells about one item.

const { factsOf } = require('../catalogue');
const { frame, rounded } = require('../shapes');
const { colors, screen } = require('../theme');
const { drawButton } = require('./parts');

const panel = { x: 128, y: 92, width: 1024, height: 536, radius: 28 };
const picture = { x: 168, y: 150, width: 280, height: 420 };
const textLeft = 496;
const textWidth = panel.x + panel.width - 48 - textLeft;

class DetailPanel {
  constructor(app, item) {
    this.app = app;
    this.item = item;
    this.button = 0;
  }

  get labels() {
    const isListed = this.app.settings.list.indexOf(this.item.id) >= 0;
    return ['Play', isListed ? 'Remove from my list' : 'Add to my list', 'Close'];
  }

  handleKey(key) {
    const actions = [
      () => this.app.play(this.item),
      () => this.app.toggleListed(this.item.id),
      () => this.app.close()
    ];
    if (key === 'left') this.button = Math.max(0, this.button - 1);
    else if (key === 'right') this.button = Math.min(actions.length - 1, this.button + 1);
    else if (key === 'enter') actions[this.button]();
    else if (key === 'play' || key === 'playPause') this.app.play(this.item);
    else if (key === 'back') this.app.close();
  }

  draw(pen) {
    pen.faded(0.7, () => pen.fill(colors.background, 0, 0, screen.width, screen.height));
    // A picture is made translucent as a whole, so that its overlapping parts don't show.
    const { x, y, width, height, radius } = panel;
    pen.faded(0.95, () => pen.place(rounded(colors.panel, width, height, radius), x, y));
    pen.place(frame(colors.raised, width, height, radius, 2), x, y);
    const { full } = this.app.tiles.get(this.item.id);
    pen.stretch(full, picture.x, picture.y, picture.width, picture.height);
    this.drawText(pen);
    this.drawButtons(pen);
  }

  drawText(pen) {
    const { title, description } = this.item;
    const accent = this.app.settings.accent;
    const lines = pen.wrap('title', title, textWidth, 2);
    const facts = pen.lines('title', colors.text, lines, textLeft, 184, 44) - 4;
    pen.text('strong', accent, factsOf(this.item), textLeft, facts);
    const wrapped = pen.wrap('body', description, textWidth, 6);
    const end = pen.lines('body', colors.text, wrapped, textLeft, facts + 46, 30);
    this.drawCredit(pen, 'Director', this.item.director, end + 14);
    this.drawCredit(pen, 'Cast', this.item.cast, end + 44);
  }

  drawCredit(pen, role, names, y) {
    pen.text('body', colors.quiet, role, textLeft, y);
    const shown = pen.shorten('body', names, textWidth - 100);
    pen.text('body', colors.text, shown, textLeft + 100, y);
  }

  drawButtons(pen) {
    const y = picture.y + picture.height - 52;
    this.labels.reduce((x, label, index) => {
      const width = drawButton(pen, label, x, y, index === this.button, this.app.settings.accent);
      return x + width + 16;
    }, textLeft);
  }
}

module.exports = { DetailPanel };
