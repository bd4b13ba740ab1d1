'use strict';

const { rounded } = require('../home/shapes');
const { colors, margin } = require('../home/theme');

/** Names of ISO 639-2 codes, each in its own language. */
const names = {
  deu: 'Deutsch',
  eng: 'English',
  fra: 'Français',
  ita: 'Italiano',
  por: 'Português',
  spa: 'Español',
  und: 'Original'
};

const panel = { x: margin.x, bottom: 524, width: 560, radius: 24 };
const column = { pitch: 264, width: 248 };
const line = { pitch: 46, height: 42 };

/** Chooses the languages of sound and subtitles, in two columns. */
class LanguageMenu {
  constructor(playback) {
    this.playback = playback;
    const choices = (kind) =>
      playback.tracks(kind).map((track) => ({
        kind,
        id: track.id,
        text: names[track.language] || track.language
      }));
    this.columns = [
      { title: 'Sound', choices: choices('audio') },
      {
        title: 'Subtitles',
        choices: [{ kind: 'subtitle', id: undefined, text: 'Off' }].concat(choices('subtitle'))
      }
    ];
    this.column = 0;
    this.lines = this.columns.map((each) =>
      Math.max(0, each.choices.findIndex(this.isChosen, this))
    );
  }

  isChosen(choice) {
    return this.playback.chosen[choice.kind] === choice.id;
  }

  handleKey(key) {
    const { choices } = this.columns[this.column];
    const move = { up: -1, down: 1 }[key] || 0;
    const last = Math.max(0, choices.length - 1);
    this.lines[this.column] = Math.max(0, Math.min(this.lines[this.column] + move, last));
    if (key === 'left') this.column = 0;
    else if (key === 'right') this.column = 1;
    else if (key === 'enter' && choices.length > 0) this.choose(choices[this.lines[this.column]]);
  }

  choose(choice) {
    this.playback.choose(choice.kind, choice.id);
  }

  draw(pen, accent) {
    const longest = Math.max.apply(
      null,
      this.columns.map((each) => each.choices.length)
    );
    const height = 92 + longest * line.pitch;
    const top = panel.bottom - height;
    pen.faded(0.94, () =>
      pen.place(rounded(colors.panel, panel.width, height, panel.radius), panel.x, top)
    );
    this.columns.forEach((each, index) => this.drawColumn(pen, each, index, top, accent));
  }

  drawColumn(pen, each, index, top, accent) {
    const x = panel.x + 24 + index * column.pitch;
    pen.text('heading', colors.quiet, each.title, x + 20, top + 50);
    each.choices.forEach((choice, at) => {
      const y = top + 70 + at * line.pitch;
      const isFocused = index === this.column && at === this.lines[index];
      if (isFocused) pen.place(rounded(accent, column.width, line.height, 12), x, y);
      const ink = isFocused ? colors.onAccent : colors.text;
      if (this.isChosen(choice)) pen.text('strong', ink, '✓', x + 20, y + 28);
      pen.text('strong', ink, choice.text, x + 52, y + 28);
    });
  }
}

module.exports = { LanguageMenu };
