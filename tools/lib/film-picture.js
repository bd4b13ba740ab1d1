'use strict';

// Looks whether the screen shows the very picture of the sample film that is due.

const { readPicture } = require('../../test/device/support/png');
const { numberAt, readCounter } = require('../media/frame-counter');
const { picture } = require('../media/scenes');

/** Where the film's picture lies in a player's bounds: it keeps its shape. */
function placeIn(bounds) {
  const height = (bounds.w * picture.height) / picture.width;
  return { x: bounds.x, y: bounds.y + (bounds.h - height) / 2, w: bounds.w };
}

/**
 * Saves the screen while the sample film plays on it, and reads the number of its picture.
 * @param client a connection to the device's control channel
 * @param player number of the film's player
 * @returns a promise of { number, earliest, latest, position }: the number that was read; those of
 *     the pictures that were on the screen before and after; the film's time before, in ms
 */
function captureFilm(client, player, file) {
  const look = () =>
    client
      .request('players')
      .then((answer) => answer.players.filter((each) => each.player === player)[0]);
  return look().then((before) =>
    client
      .request('capture', { file })
      .then(look)
      .then((after) => ({
        number: readCounter(readPicture(file), placeIn(before.bounds), picture.width),
        earliest: numberAt(before.picture),
        latest: numberAt(after.picture),
        position: before.time.now
      }))
  );
}

/** Whether the picture is one that was due. */
const isRight = (seen) => seen.earliest <= seen.number && seen.number <= seen.latest;

/** "0:03.120: picture 78, expected 78 to 79" */
function describe(seen) {
  const expected =
    seen.earliest === seen.latest ? seen.latest : `${seen.earliest} to ${seen.latest}`;
  return `at ${(seen.position / 1000).toFixed(3)} s: picture ${seen.number}, expected ${expected}`;
}

module.exports = { captureFilm, describe, isRight };
