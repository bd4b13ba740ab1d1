'use strict';

// The page on which a film plays: the film, its advertisements, and what is drawn over them.

const { fade } = require('../home/shapes');
const { colors, screen } = require('../home/theme');
const { AdBreak } = require('./ad-break');
const { LanguageMenu } = require('./language-menu');
const { Playback } = require('./playback');
const { drawAdBadge, drawMessage, drawSpinner, drawVolume } = require('./notices');
const { drawTitle, drawTransport } = require('./transport');

/** How often the time is looked at, and for how long the controls stay after a key; in ms. */
const tick = 200;
const patience = 4000;

const jump = 10000;

/** Told on the screen in place of the film. */
const messages = {
  ended: 'The end',
  failed: 'This film can’t be played',
  'taken away': 'The television has ended this film',
  suspended: 'Paused by the television'
};

class PlayerPage {
  /**
   * app: settings.accent; close() leaves the page; changed() has it drawn again.
   * film: see programme.js
   */
  constructor(app, film) {
    this.app = app;
    this.film = film;
    this.adBreak = null;
    this.menu = null;
    this.volumeUntil = 0;
    // As on every television: what has been shown isn't shown again.
    this.pending = film.breaks.slice();
    this.playback = new Playback(film.url, { x: 0, y: 0, w: screen.width, h: screen.height }, () =>
      this.changed()
    );
    this.timer = setInterval(() => this.watch(), tick);
    this.showControls();
  }

  leave() {
    clearInterval(this.timer);
    if (this.adBreak) this.adBreak.close();
    this.playback.close();
    this.app.close();
  }

  changed() {
    if (this.playback.phase === 'playing' && !this.hasPlayed) {
      this.hasPlayed = true;
      this.showControls();
    }
    if (this.playback.isOver) this.menu = null;
    this.app.changed();
  }

  showControls() {
    this.controlsUntil = Date.now() + patience;
  }

  get hasControls() {
    const { isPaused, speed } = this.playback;
    return isPaused || speed !== 1 || Date.now() < this.controlsUntil;
  }

  /** Called again and again: begins an advertisement when its time has come. */
  watch() {
    this.playback.look();
    const { now } = this.playback.time;
    const due = this.pending.filter((each) => each.at <= now);
    if (due.length > 0 && !this.adBreak && this.playback.phase === 'playing') this.interrupt(due);
    // Also once after the controls have gone.
    if (this.isMoving || this.wasMoving) this.app.changed();
    this.wasMoving = this.isMoving;
  }

  get isMoving() {
    const isWaiting = this.playback.isWaiting || Date.now() < this.volumeUntil;
    return this.hasControls || isWaiting || this.adBreak !== null;
  }

  /** Shows the last of the advertisements that are due, as if the others had been seen. */
  interrupt(due) {
    this.pending = this.pending.filter((each) => due.indexOf(each) < 0);
    this.menu = null;
    this.playback.pause();
    const goOn = () => {
      this.adBreak = null;
      this.playback.play();
      this.changed();
    };
    const { url } = due[due.length - 1];
    this.adBreak = new AdBreak(url, this.playback.volume, () => this.changed(), goOn);
  }

  handleKey(key) {
    this.showControls();
    if (key === 'stop') this.leave();
    else if (key.startsWith('volume') || key === 'mute') this.changeVolume(key);
    else if (this.adBreak) this.handleKeyInBreak(key);
    else if (this.menu) this.handleKeyInMenu(key);
    else this.handleKeyOfFilm(key);
    this.app.changed();
  }

  handleKeyInBreak(key) {
    if (key === 'back') this.leave();
    else if (['enter', 'playPause', 'play', 'pause'].indexOf(key) >= 0) this.adBreak.togglePause();
  }

  handleKeyInMenu(key) {
    if (key === 'back' || key === 'subtitle') this.menu = null;
    else this.menu.handleKey(key);
  }

  handleKeyOfFilm(key) {
    const { playback } = this;
    const actions = {
      back: () => this.leave(),
      enter: () => playback.togglePause(),
      playPause: () => playback.togglePause(),
      play: () => playback.play(),
      pause: () => playback.pause(),
      left: () => playback.seekBy(-jump),
      right: () => playback.seekBy(jump),
      forward: () => playback.hurry('forward'),
      rewind: () => playback.hurry('rewind'),
      up: () => this.openMenu(),
      subtitle: () => this.openMenu()
    };
    if (actions[key]) actions[key]();
  }

  openMenu() {
    if (this.playback.isOpen) this.menu = new LanguageMenu(this.playback);
  }

  changeVolume(key) {
    const { volume } = this.playback;
    const steps = { volumeUp: volume + 1, volumeDown: volume - 1, mute: volume === 0 ? 1 : 0 };
    this.playback.setVolume(steps[key]);
    if (this.adBreak) this.adBreak.setVolume(this.playback.volume);
    this.volumeUntil = Date.now() + patience / 2;
  }

  /** The television runs the application in front again: goes on with what it took away. */
  resume() {
    if (this.adBreak && this.adBreak.isPaused) this.adBreak.togglePause();
    else if (this.playback.phase === 'suspended') this.playback.play();
  }

  draw(pen) {
    // Where nothing is drawn, the video below shows.
    pen.canvas.clearRect(0, 0, screen.width, screen.height);
    if (this.adBreak) this.drawBreak(pen);
    else this.drawFilm(pen);
    if (Date.now() < this.volumeUntil)
      drawVolume(pen, this.playback.volume, this.app.settings.accent);
  }

  drawBreak(pen) {
    const { time, isPaused, isShown } = this.adBreak;
    if (isShown) drawAdBadge(pen, time, isPaused, this.app.settings.accent);
    else drawSpinner(pen, this.app.settings.accent, 'Advertisement');
  }

  drawFilm(pen) {
    const { playback, film } = this;
    const { accent } = this.app.settings;
    const message = messages[playback.phase];
    if (message) {
      const reason = playback.phase === 'failed' ? playback.reason : '';
      drawMessage(pen, message, reason);
      return;
    }
    if (playback.isWaiting) {
      const share = playback.phase === 'loading' ? `${playback.percent} %` : '';
      drawSpinner(pen, accent, share);
    }
    if (!this.hasControls && !this.menu) return;
    pen.place(fade(colors.background, screen.width, 170, 225, 0), 0, 0);
    pen.place(fade(colors.background, screen.width, 120, 30, 245), 0, screen.height - 120);
    drawTitle(pen, film.title);
    drawTransport(pen, playback, film, accent);
    if (this.menu) this.menu.draw(pen, accent);
  }
}

module.exports = { PlayerPage };
