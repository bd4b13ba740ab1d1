'use strict';

const { mediaServices } = require('quiravent');
const { makeListening } = require('./listening');

const patience = 10000; // ms

const listen = makeListening();

/** What ends an advertisement, one way or another. */
const ends = ['playback_completed', 'playback_error', 'playback_abort', 'fetch_error'];

/**
 * An advertisement over the film, whose picture it covers. Whatever becomes of it, onEnd is called
 * once, and then the film goes on.
 */
class AdBreak {
  constructor(url, volume, onChange, onEnd) {
    this.volume = volume;
    this.onEnd = onEnd;
    this.ad = null;
    this.isPaused = false;
    // A film isn't kept waiting for an advertisement that doesn't come.
    this.timer = setTimeout(() => this.isShown || this.end(), patience);
    // An advertisement fills the screen; the rectangle is asked for all the same.
    mediaServices.getAdPlayer(url, {}, (error, ad) => {
      if (ad) this.begin(ad, onChange);
      else this.end();
    });
  }

  begin(ad, onChange) {
    this.ad = ad;
    listen(ad, (event) => {
      if (event === 'playback_suspend') this.isPaused = true;
      if (ends.indexOf(event) >= 0) this.end();
      else onChange();
    });
    ad.setVolume(this.volume);
    if (this.onEnd) ad.start();
    else ad.unload();
  }

  get isShown() {
    return this.time.now > 0;
  }

  /** { now, end } in ms. */
  get time() {
    return this.ad ? this.ad.getTime() : { now: 0, end: 0 };
  }

  togglePause() {
    if (!this.ad) return;
    this.isPaused = !this.isPaused;
    if (this.isPaused) this.ad.pause();
    else this.ad.resume();
  }

  setVolume(volume) {
    this.volume = volume;
    if (this.ad) this.ad.setVolume(volume);
  }

  end() {
    const onEnd = this.onEnd;
    this.close();
    if (onEnd) onEnd();
  }

  close() {
    clearTimeout(this.timer);
    this.onEnd = null;
    if (this.ad) this.ad.unload();
    this.ad = null;
  }
}

module.exports = { AdBreak };
