'use strict';

/** How long a viewer may take for the next digit, in milliseconds. */
const patience = 1500;

/** Which channel the viewer wants, by the keys for up and down and by digits. */
class Zapping {
  /** onChoice is called with a channel; onChange when what has been entered is another. */
  constructor(channels, onChoice, onChange) {
    this.channels = channels;
    this.onChoice = onChoice;
    this.onChange = onChange;
    this.channel = channels[0];
    this.digits = '';
    this.timer = null;
  }

  step(by) {
    const count = this.channels.length;
    this.choose(this.channels[(this.channels.indexOf(this.channel) + by + count) % count]);
  }

  choose(channel) {
    this.clear();
    this.channel = channel;
    this.onChoice(channel);
  }

  enter(digit) {
    this.clear(this.digits + digit);
    const isBeginning = (each) => String(each.number).startsWith(this.digits);
    const candidates = this.channels.filter(isBeginning);
    // What can't become another number any more needn't be waited for.
    const isCertain =
      candidates.length === 0 ||
      (candidates.length === 1 && String(candidates[0].number) === this.digits);
    this.timer = setTimeout(() => this.settle(), isCertain ? 0 : patience);
  }

  settle() {
    const channel = this.channels.find((each) => String(each.number) === this.digits);
    this.clear();
    if (channel) this.choose(channel);
    this.onChange();
  }

  clear(digits) {
    clearTimeout(this.timer);
    this.digits = digits || '';
  }
}

module.exports = { Zapping };
