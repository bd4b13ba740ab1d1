'use strict';

const { rowsWith } = require('./catalogue');
const { Motion } = require('./motion');
const { DetailPanel } = require('./pages/details');
const { HomePage } = require('./pages/home');
const { SettingsPage } = require('./pages/settings');
const { PlayerPage } = require('../player/page');
const { sampleFilm } = require('../player/programme');
const { makeMultiplex } = require('../television/multiplex');
const { TelevisionPage } = require('../television/page');
const { duration } = require('./theme');

/**
 * The application: what the viewer sees is drawn from what the pages hold, and keys change what they
 * hold. It knows neither where keys come from nor when pictures are due.
 */
class App {
  /**
   * parts.settings: Settings; parts.tiles: a Map of tiles by the item's id; parts.backdrop: a canvas
   * of the screen's size; parts.now: gives the time as a Date; parts.isStill: without motion, even
   * where the viewer has chosen it. Whoever draws it sets `changed`, which it calls to be drawn anew.
   */
  constructor(parts) {
    Object.assign(this, parts);
    this.motion = new Motion(0);
    this.updateRows();
    this.settingsChanged();
    this.home = new HomePage(this, this.settings.read('focus'));
    this.overlay = null;
    this.player = null;
  }

  handleKey(key) {
    if (key === 'guide' && !this.player) this.watchTelevision();
    else (this.player || this.overlay || this.home).handleKey(key);
  }

  /** time: in milliseconds, of the motion alone. Gives whether another picture should follow. */
  draw(pen, time) {
    if (this.player) {
      // It asks for its pictures itself.
      this.player.draw(pen);
      return false;
    }
    this.motion.begin(time);
    const shown = this.motion.value('overlay', this.overlay ? 1 : 0);
    // What has been closed is still seen while it fades out.
    this.lastOverlay = this.overlay || this.lastOverlay;
    this.home.draw(pen, this.motion);
    pen.faded(shown, () => this.lastOverlay.draw(pen));
    return this.motion.isMoving;
  }

  openDetails(item) {
    this.overlay = new DetailPanel(this, item);
  }

  /** Plays the sample film, whatever the item is. */
  play(item) {
    this.player = new PlayerPage(this, sampleFilm(item.title));
  }

  watchTelevision() {
    try {
      this.player = new TelevisionPage(this, makeMultiplex());
    } catch (error) {
      console.error(`home: ${error.message}`);
    }
  }

  /** The television has the application in front again. */
  resume() {
    if (this.player) this.player.resume();
  }

  openSettings() {
    this.overlay = new SettingsPage(this);
  }

  /** Leaves the film or the television, or what is open over the home page. */
  close() {
    if (this.player) this.player = null;
    else this.overlay = null;
  }

  rememberFocus(id) {
    this.settings.write('focus', id);
  }

  toggleListed(id) {
    this.settings.toggleListed(id);
    this.updateRows();
    this.home.rowsChanged();
  }

  settingsChanged() {
    const isSmooth = !this.isStill && this.settings.get('motion') === 'Smooth';
    this.motion.duration = isSmooth ? duration : 0;
  }

  updateRows() {
    this.rows = rowsWith(this.settings.list);
  }
}

module.exports = { App };
