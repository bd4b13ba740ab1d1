'use strict';

const { deviceCommand } = require('../lib/device-command');
const { columns } = require('../lib/help');

/** "12:45 Title", of an event that may be missing. */
function eventText(label, event) {
  if (!event) return '';
  const time = event.start ? new Date(event.start * 1000).toISOString().slice(11, 16) + ' ' : '';
  return `${label}: ${time}${event.title}`;
}

function streamText(stream) {
  const language = stream.language ? ` ${stream.language}` : '';
  return `${stream.pid} ${stream.codec}${language}`;
}

function serviceRow(service) {
  return [
    String(service.number),
    service.name || '-',
    (service.streams || []).map(streamText).join(', '),
    eventText('now', service.present),
    eventText('next', service.following)
  ];
}

function signalText(signal) {
  const rate = (signal.bitRate / 1e6).toFixed(3);
  return (
    `signal: ${rate} Mbit/s, ${signal.packets} packets, ` +
    `${signal.continuityErrors} gaps, ${signal.damagedPackets} damaged`
  );
}

function text(tuner) {
  const lines = [tuner.reason ? `${tuner.state}: ${tuner.reason}` : tuner.state];
  if (tuner.selector !== undefined) {
    lines.push(`selected: ${[tuner.selector, tuner.option].filter((part) => part).join(' ')}`);
  }
  if (tuner.signal) lines.push(signalText(tuner.signal));
  if (tuner.services && tuner.services.length > 0) {
    lines.push(columns(tuner.services.map(serviceRow)).replace(/ +$/gm, ''));
  }
  return lines.join('\n');
}

module.exports = deviceCommand({
  name: 'tuner',
  summary: "print what a running device's tuner receives: services, what is on, the signal",
  notes: ['With --json also all counters, by packet identifier.'],
  talk: (client) => client.request('tuner').then((answer) => ({ tuner: answer.tuner })),
  print: (result) => text(result.tuner)
});
