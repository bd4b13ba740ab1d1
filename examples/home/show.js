'use strict';

const frameTime = 1000 / 60;

/**
 * Puts an application's pictures on the screen: one after each change, and while something moves
 * sixty in a second. Nothing is drawn while nothing changes.
 */
class Show {
  constructor(app, pen) {
    this.app = app;
    this.pen = pen;
    this.timer = null;
    this.onRest = null;
  }

  /** Draws a picture soon. onRest is called once, when it has been flushed and nothing moves. */
  update(onRest) {
    this.onRest = onRest || this.onRest;
    if (this.timer === null) this.timer = setTimeout(() => this.draw(), 0);
  }

  draw() {
    const start = Date.now();
    this.timer = null;
    const isMoving = this.app.draw(this.pen, start);
    this.pen.canvas.flush();
    if (isMoving) this.timer = setTimeout(() => this.draw(), frameTime - (Date.now() - start));
    else this.rest();
  }

  rest() {
    const onRest = this.onRest;
    this.onRest = null;
    if (onRest) onRest();
  }
}

module.exports = { Show };
