'use strict';

const { mediaServices } = require('quiravent');
const { makeListening } = require('./listening');

/** What a player's events say about what the viewer sees. */
const phases = {
  fetch_in_progress: 'loading',
  fetch_ready: 'ready',
  fetch_error: 'failed',
  playback_ready: 'playing',
  playback_error: 'failed',
  playback_stalled: 'buffering',
  playback_recovering: 'playing',
  playback_completed: 'ended',
  playback_abort: 'taken away',
  playback_suspend: 'suspended'
};

/** Speeds of the keys "forward" and "rewind", each further press the next. */
const speeds = { forward: [2, 4, 8, 16, 32], rewind: [-2, -4, -8, -16, -32] };

const listen = makeListening();

/** Subtitles are switched off by an id that no track has. */
const noTrack = 0xffffffff;

/**
 * A film on the screen. `phase` is what the device does: 'opening', 'loading', 'ready', 'playing',
 * 'buffering', 'suspended' (something else has the picture), or at last 'ended', 'failed', 'taken away'.
 * `isPaused` is what the viewer wants.
 */
class Playback {
  /** onChange: called after each change of what is said above. */
  constructor(url, bounds, onChange) {
    this.url = url;
    this.onChange = onChange;
    this.player = null;
    this.phase = 'opening';
    this.percent = 0;
    this.isPaused = false;
    this.speed = 1;
    this.volume = 1;
    this.chosen = {};
    this.lastNow = 0;
    this.stood = 0;
    this.moved = 0;
    this.isClosed = false;
    // The player is made in the background. The viewer may have left when it comes.
    mediaServices.getPlayer(url, bounds, (error, player) => {
      if (player) this.begin(player);
      else this.enter('failed', error.message);
    });
  }

  begin(player) {
    this.player = player;
    // Listen first: what is told before is lost.
    listen(player, (event, value) => this.hear(event, value));
    if (this.isClosed) player.unload();
    else player.start();
  }

  hear(event, value) {
    if (this.isClosed) return;
    if (event === 'fetch_in_progress') this.percent = Number(value);
    // A medium's tracks are known from here on; its first sound is the one that is heard.
    if (event === 'fetch_ready' && !('audio' in this.chosen))
      this.chosen.audio = (this.tracks('audio')[0] || {}).id;
    this.enter(phases[event] || this.phase, `error ${value}`);
  }

  enter(phase, reason) {
    this.phase = phase;
    this.reason = reason;
    this.onChange();
  }

  get isOver() {
    return ['ended', 'failed', 'taken away'].indexOf(this.phase) >= 0;
  }

  /** Whether there is a film that can be told something. */
  get isOpen() {
    return this.player !== null && !this.isOver;
  }

  get isWaiting() {
    if (this.phase === 'playing') return !this.isPaused && this.stood > 2;
    return ['opening', 'loading', 'ready', 'buffering'].indexOf(this.phase) >= 0;
  }

  /**
   * To be called some times in a second. Events tell why a film stands still; whether it does, its
   * time tells best: an event that comes while the listener is only just being set up lies there
   * until the next one, and after a jump to what isn't loaded yet there may be none at all.
   */
  look() {
    const { now } = this.time;
    const isSame = now === this.lastNow;
    this.lastNow = now;
    this.stood = isSame ? this.stood + 1 : 0;
    this.moved = isSame ? 0 : this.moved + 1;
    // A single step may be a jump.
    if (this.moved < 3 || !this.isWaiting) return;
    if (this.phase !== 'buffering') this.hear('fetch_ready');
    this.hear('playback_ready');
  }

  /** In ms; zeros until the medium is known. */
  get time() {
    return this.player ? this.player.getTime() : { begin: 0, now: 0, end: 0 };
  }

  /** Ranges of ms that could be played without reading on. */
  get buffered() {
    return this.player ? this.player.getBufferedTimes() : [];
  }

  togglePause() {
    if (this.isPaused || this.speed !== 1 || this.phase === 'suspended') this.play();
    else this.pause();
  }

  pause() {
    if (!this.isOpen) return;
    this.isPaused = true;
    this.player.pause();
  }

  /** Goes on at normal speed, from where it is. */
  play() {
    if (!this.isOpen) return;
    this.speed = this.player.setPlaybackSpeed(1);
    this.isPaused = false;
    this.player.resume();
  }

  /** direction: "forward" or "rewind"; each further press is faster, up to what the device can. */
  hurry(direction) {
    if (!this.isOpen) return;
    const next = speeds[direction].find((speed) => Math.abs(speed) > Math.abs(this.speed));
    const isSameWay = speeds[direction].indexOf(this.speed) >= 0;
    const wanted = isSameWay ? next || this.speed : speeds[direction][0];
    // The device says which speed it has taken.
    this.speed = this.player.setPlaybackSpeed(wanted);
    this.isPaused = false;
    this.player.resume();
  }

  /** By so many ms, backwards where negative. */
  seekBy(ms) {
    if (!this.isOpen) return;
    const { begin, now, end } = this.time;
    this.player.seek(Math.max(begin, Math.min(now + ms, end)));
  }

  /** The volume is a whole number: 0 is silence, 1 the film's own loudness, 2 double. */
  setVolume(volume) {
    this.volume = Math.max(0, Math.min(volume, 2));
    if (this.player) this.player.setVolume(this.volume);
  }

  /** kind: "audio" or "subtitle". */
  tracks(kind) {
    return (this.player && this.player.getTracks(kind)) || [];
  }

  /** id: of a track, or undefined for no subtitles. */
  choose(kind, id) {
    if (!this.isOpen) return;
    this.chosen[kind] = id;
    this.player.selectTrack(kind, id === undefined ? noTrack : id);
  }

  /** Takes the film off the screen and gives everything back. */
  close() {
    this.isClosed = true;
    if (this.player) this.player.unload();
    this.player = null;
  }
}

module.exports = { Playback };
