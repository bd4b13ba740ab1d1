'use strict';

/**
 * Draws on the screen for the pages: text by the style's name, wrapped or shortened to the room
 * there is, other canvases faded in and out. Places may have fractions; they are drawn at whole
 * pixels, so that text stays crisp.
 */
class Pen {
  /** fonts: loaded fonts by the name of the style. A font must live as long as it draws. */
  constructor(canvas, fonts) {
    this.canvas = canvas;
    this.fonts = fonts;
    this.opacity = 1;
    this.texts = new Map();
  }

  fill(color, x, y, width, height) {
    this.canvas.setColor(color);
    this.canvas.fillRect(Math.round(x), Math.round(y), Math.round(width), Math.round(height));
  }

  /** y is that of the baseline; align says what x is: "left", "center" or "right". */
  text(style, color, text, x, y, align) {
    this.canvas.setFont(this.fonts[style]);
    this.canvas.setTextAlign(align || 'left', 'baseline');
    this.canvas.setColor(color);
    this.canvas.drawText(text, Math.round(x), Math.round(y));
  }

  widthOf(style, text) {
    this.canvas.setFont(this.fonts[style]);
    return this.canvas.measureText(text).width;
  }

  /** Draws another canvas at its own size. */
  place(source, x, y) {
    this.canvas.compose(source, Math.round(x), Math.round(y));
  }

  /** Draws another canvas scaled to a rectangle. */
  stretch(source, x, y, width, height) {
    const [left, top] = [Math.round(x), Math.round(y)];
    const [right, bottom] = [Math.round(x + width), Math.round(y + height)];
    this.canvas.composeScaled(source, { x: left, y: top, w: right - left, h: bottom - top });
  }

  /** Has body draw at an opacity, beside the one that is in force. */
  faded(opacity, body) {
    const outer = this.opacity;
    this.setOpacity(outer * opacity);
    if (this.opacity > 0) body();
    this.setOpacity(outer);
  }

  setOpacity(opacity) {
    this.opacity = opacity;
    this.canvas.setOpacity(opacity);
  }

  /** Has body draw in a part of the screen only. */
  clipped(x, y, width, height, body) {
    this.canvas.setClip(x, y, width, height);
    body();
    this.canvas.setClip();
  }

  /** The text if there is room for it; otherwise as much as there is room for, and an ellipsis. */
  shorten(style, text, width) {
    if (this.widthOf(style, text) <= width) return text;
    let length = text.length - 1;
    const shortened = () => `${text.slice(0, length).replace(/[\s.,;:’]+$/, '')}…`;
    while (length > 1 && this.widthOf(style, shortened()) > width) length--;
    return shortened();
  }

  /** The text in at most `count` lines, broken between words; the last may be shortened. */
  wrap(style, text, width, count) {
    const key = `${style} ${width} ${count} ${text}`;
    if (!this.texts.has(key)) this.texts.set(key, this.breakLines(style, text, width, count));
    return this.texts.get(key);
  }

  breakLines(style, text, width, count) {
    const lines = [''];
    text.split(' ').forEach((word) => {
      const last = lines[lines.length - 1];
      const longer = last ? `${last} ${word}` : word;
      // All that has no room any more stays on the last line, to be shortened.
      const fits = !last || lines.length === count || this.widthOf(style, longer) <= width;
      if (fits) lines[lines.length - 1] = longer;
      else lines.push(word);
    });
    return lines.map((line) => this.shorten(style, line, width));
  }

  /** Draws lines below one another; gives the baseline of a line after the last. */
  lines(style, color, lines, x, y, step) {
    lines.forEach((line, index) => this.text(style, color, line, x, y + index * step));
    return y + lines.length * step;
  }
}

module.exports = { Pen };
