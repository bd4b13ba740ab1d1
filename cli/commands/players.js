'use strict';

const { deviceCommand } = require('../lib/device-command');
const { columns } = require('../lib/help');

const seconds = (ms) => (ms / 1000).toFixed(3);

function rowOf(player) {
  const { now, end } = player.time;
  const state = player.reason ? `${player.state}: ${player.reason}` : player.state;
  const selected = Object.keys(player.tracks)
    .map((kind) => player.tracks[kind].filter((track) => track.selected)[0])
    .map((track) => (track ? track.language : '-'))
    .join(' ');
  const { x, y, w, h } = player.bounds;
  return [
    String(player.player),
    player.kind,
    state,
    `${seconds(now)} of ${seconds(end)} s`,
    `x${player.speed}`,
    selected,
    `${x},${y} ${w}x${h}`,
    player.url
  ];
}

module.exports = deviceCommand({
  name: 'players',
  summary: "list a running device's players: what they play, and how far they have come",
  notes: [
    'A line tells number, kind, state, time, speed, the languages of picture, sound and\n' +
      'subtitles, bounds and URL. With --json also buffered ranges and all tracks.'
  ],
  talk: (client) => client.request('players').then((answer) => ({ players: answer.players })),
  print: (result) => (result.players.length > 0 ? columns(result.players.map(rowOf)) : 'no players')
});
