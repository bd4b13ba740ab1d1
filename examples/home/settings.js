'use strict';

// What the viewer has chosen, kept in the device's store from one start to the next.

const { accents } = require('./theme');

// The first choice is the default.
const choices = [
  {
    key: 'accent',
    title: 'Accent colour',
    hint: 'Frames, buttons and marks',
    values: Object.keys(accents)
  },
  { key: 'clock', title: 'Clock', hint: 'How the time is shown', values: ['24 hours', '12 hours'] },
  { key: 'titles', title: 'Titles', hint: 'Names below the posters', values: ['Shown', 'Hidden'] },
  {
    key: 'motion',
    title: 'Motion',
    hint: 'Between one picture and the next',
    values: ['Smooth', 'Off']
  }
];

class Settings {
  /**
   * store: of dataServices.getPersistent; undefined where the device can't open one, and then
   * everything lasts until the application ends. It is read once, since pages ask at every picture.
   */
  constructor(store) {
    this.store = store;
    this.values = store ? store.getAll() : {};
  }

  read(key) {
    return this.values[key];
  }

  write(key, value) {
    this.values[key] = String(value);
    if (this.store) this.store.set(key, value);
  }

  /** The value of a choice. What an older version of the application stored may not exist here. */
  get(key) {
    const choice = choices.find((each) => each.key === key);
    const stored = this.read(key);
    return choice.values.indexOf(stored) >= 0 ? stored : choice.values[0];
  }

  /** Goes to the next value of a choice, or with -1 to the one before. */
  step(key, direction) {
    const values = choices.find((each) => each.key === key).values;
    const next = values.indexOf(this.get(key)) + direction;
    this.write(key, values[(next + values.length) % values.length]);
  }

  reset() {
    choices.forEach((choice) => this.write(choice.key, choice.values[0]));
  }

  get accent() {
    return accents[this.get('accent')];
  }

  /** Identifiers of the items on the viewer's own list. */
  get list() {
    return (this.read('list') || '').split(' ').filter((id) => id);
  }

  toggleListed(id) {
    const list = this.list;
    const rest = list.filter((each) => each !== id);
    this.write('list', (rest.length < list.length ? rest : list.concat([id])).join(' '));
  }

  /** Counts a start; the number of this one, and when the one before was (undefined: never). */
  countStart(now) {
    this.starts = Number(this.read('starts') || 0) + 1;
    const before = Number(this.read('last start'));
    this.previousStart = before > 0 ? new Date(before) : undefined;
    this.write('starts', this.starts);
    this.write('last start', now.getTime());
  }
}

module.exports = { Settings, choices };
