'use strict';

const { channels, NONE } = require('./channels');
const { drawBanner, drawList, drawNumber, drawRadio, drawVolume } = require('./overlays');
const { Receiver } = require('./receiver');
const { drawNoSignal } = require('./signal');
const { Zapping } = require('./zapping');
const { screen } = require('../home/theme');

/** How long what tells of a change stays on the screen, in milliseconds. */
const bannerTime = 5000;
const volumeTime = 2000;

/**
 * Television: the picture of the chosen channel, and over it what the viewer is told. The screen is
 * clear where nothing is drawn, so that the picture is seen through it.
 */
class TelevisionPage {
  /** app: settings, now, changed(), close(); see home/app.js. selector: what is tuned. */
  constructor(app, selector) {
    this.app = app;
    this.signal = true;
    this.captions = false;
    this.isMuted = false;
    this.level = 10;
    this.listFocus = null;
    this.timers = {};
    this.receiver = new Receiver(selector, (signal) => {
      this.signal = signal;
      app.changed();
    });
    this.zapping = new Zapping(
      channels,
      (channel) => this.watch(channel),
      () => app.changed()
    );
    this.zapping.choose(channels[0]);
  }

  get channel() {
    return this.zapping.channel;
  }

  watch(channel) {
    this.canPlay = this.receiver.watch(channel);
    this.receiver.showCaptions(this.captions && channel.captions);
    this.showFor('banner', bannerTime);
  }

  /** Shows something for a while; with no time, not any more. */
  showFor(name, time) {
    clearTimeout(this.timers[name]);
    const hide = () => {
      this.timers[name] = null;
      this.app.changed();
    };
    this.timers[name] = time ? setTimeout(hide, time) : null;
  }

  handleKey(key) {
    if (this.listFocus !== null && this.handleListKey(key)) return;
    const actions = {
      channelUp: () => this.zapping.step(1),
      channelDown: () => this.zapping.step(-1),
      up: () => this.zapping.step(1),
      down: () => this.zapping.step(-1),
      enter: () => this.openList(),
      info: () => this.showFor('banner', bannerTime),
      subtitle: () => this.toggleCaptions(),
      volumeUp: () => this.changeVolume(1),
      volumeDown: () => this.changeVolume(-1),
      mute: () => this.toggleMute(),
      back: () => this.close(),
      guide: () => this.close()
    };
    if (/^\d$/.test(key)) this.zapping.enter(key);
    else if (actions[key]) actions[key]();
  }

  openList() {
    this.showFor('banner', 0);
    this.listFocus = channels.indexOf(this.channel);
  }

  /** Whether the key had a meaning in the list. */
  handleListKey(key) {
    const last = channels.length - 1;
    if (key === 'up') this.listFocus = Math.max(0, this.listFocus - 1);
    else if (key === 'down') this.listFocus = Math.min(last, this.listFocus + 1);
    else if (key !== 'enter' && key !== 'back') return false;
    else this.closeList(key === 'enter');
    return true;
  }

  closeList(isChosen) {
    if (isChosen) this.zapping.choose(channels[this.listFocus]);
    this.listFocus = null;
  }

  toggleCaptions() {
    this.captions = !this.captions;
    this.receiver.showCaptions(this.captions && this.channel.captions);
    this.showFor('banner', bannerTime);
  }

  changeVolume(by) {
    this.isMuted = false;
    this.level = Math.max(0, Math.min(20, this.level + by));
    this.applyVolume();
  }

  toggleMute() {
    this.isMuted = !this.isMuted;
    this.applyVolume();
  }

  applyVolume() {
    this.receiver.setVolume(this.isMuted ? 0 : this.level / 10);
    this.showFor('volume', volumeTime);
  }

  close() {
    Object.keys(this.timers).forEach((name) => clearTimeout(this.timers[name]));
    this.zapping.clear();
    this.receiver.close();
    this.app.close();
  }

  /** The device has the application in front again; its television went on. */
  resume() {
    this.app.changed();
  }

  draw(pen) {
    pen.canvas.clearRect(0, 0, screen.width, screen.height);
    if (this.signal !== true || !this.canPlay) drawNoSignal(pen, this.channel, this.signal);
    else if (this.channel.video === NONE) drawRadio(pen, this.app, this.channel);
    if (this.listFocus !== null) drawList(pen, this.app, channels, this.listFocus);
    else if (this.timers.banner) drawBanner(pen, this.app, this.channel, this.captions);
    if (this.timers.volume) drawVolume(pen, this.app, this.isMuted ? 0 : this.level);
    if (this.zapping.digits) drawNumber(pen, this.zapping.digits);
  }
}

module.exports = { TelevisionPage };
