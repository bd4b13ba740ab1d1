'use strict';

/**
 * Moves numbers smoothly to where they should be. A page asks for a number by a name and says what
 * it should become; it gets what it is at this moment. So pages say only where things belong, and
 * nothing has to be started or stopped.
 */
class Motion {
  /** duration: of one move, in milliseconds; 0 has everything in its place at once. */
  constructor(duration) {
    this.duration = duration;
    this.moves = new Map();
    this.isMoving = false;
  }

  /** Begins a picture that shows the time `now`, in milliseconds. */
  begin(now) {
    this.now = now;
    this.isMoving = false;
  }

  value(name, target) {
    const move = this.moves.get(name);
    if (!move || this.duration === 0) return this.rest(name, target);
    const current = this.at(move);
    if (move.to !== target) this.moves.set(name, { from: current, to: target, start: this.now });
    if (current !== target) this.isMoving = true;
    return current;
  }

  rest(name, target) {
    this.moves.set(name, { from: target, to: target, start: 0 });
    return target;
  }

  at(move) {
    const part = Math.min(1, (this.now - move.start) / this.duration);
    const eased = 1 - Math.pow(1 - part, 3);
    return part === 1 ? move.to : move.from + (move.to - move.from) * eased;
  }
}

module.exports = { Motion };
