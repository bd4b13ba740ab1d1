'use strict';

// The channels there are: each service of the multiplex, under its number. A broadcaster's
// application knows its own services; scripts get no tables from the tuner.

const { services } = require('./lineup.json');

/** Packet identifier that stands for "no such stream". */
const NONE = 8191;

function programme(event) {
  const start = new Date(event.start);
  const end = new Date(start.getTime() + event.duration * 1000);
  return { name: event.name, text: event.text || '', start, end };
}

/** What has to be passed to toggleClosedCaption to see captions; false where there are none. */
function captionsOf(service) {
  // The text of a number: service 1 inside of the pictures, or a stream of subtitles.
  if (service.captions) return '1';
  return service.subtitles ? String(service.subtitles.pid) : false;
}

function channel(service) {
  return {
    number: service.id,
    name: service.name,
    video: service.video ? service.video.pid : NONE,
    audio: service.audio[0].pid,
    clock: service.pcrPid,
    captions: captionsOf(service),
    present: programme(service.present),
    following: programme(service.following)
  };
}

module.exports = { channels: services.map(channel), NONE };
