'use strict';

const { TunerWorker, tunerServices } = require('quiravent');

/**
 * The tuner, and the player of what is watched. A TunerWorker holds the selection for as long as it
 * is open, and tells of the signal; players play whatever of their streams is received.
 */
class Receiver {
  /** onSignal is called with true when there is a signal, with a reason when there is none. */
  constructor(selector, onSignal) {
    this.player = null;
    this.volume = 1;
    this.tuner = new TunerWorker(
      selector,
      '',
      (name, data) => {
        if (name !== 'tunerlock') return;
        const comma = data.indexOf(',');
        onSignal(data.slice(0, comma) === '1' || data.slice(comma + 1));
      },
      () => {},
      (error) => console.error(error)
    );
  }

  /** Plays another channel; false where the device can't. */
  watch(channel) {
    const player = tunerServices.getPlayer(channel.video, channel.audio, channel.clock);
    if (!player) return false;
    player.setVolume(this.volume);
    player.start();
    // Only now, so that no gap is seen between the two.
    if (this.player) this.player.release();
    this.player = player;
    return true;
  }

  /** From 0 to 1. */
  setVolume(volume) {
    this.volume = volume;
    if (this.player) this.player.setVolume(volume);
  }

  /** captions: see channels.js. */
  showCaptions(captions) {
    if (this.player) this.player.toggleClosedCaption(captions);
  }

  close() {
    if (this.player) this.player.release();
    this.player = null;
    this.tuner.closeTuner();
  }
}

module.exports = { Receiver };
