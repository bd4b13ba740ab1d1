'use strict';

// The part of the tour that shows the television: its channels, captions and lost signal.

/** For how long captions of a channel are waited for, which come again and again; in ms. */
const patience = 60000;

/** Resolves once the channel that is watched shows captions, thus a picture. */
function captionsSeen(client, since) {
  return client.request('captions').then((answer) => {
    const isSeen = answer.players.some((each) => each.lines.length > 0 || each.pictures > 0);
    if (isSeen) return undefined;
    if (Date.now() - since > patience) throw new Error('the television shows no captions.');
    return new Promise((resolve) => setTimeout(resolve, 50)).then(() =>
      captionsSeen(client, since)
    );
  });
}

/** What the application tells of the signal comes to the screen. */
function loseSignal(client, isLost) {
  const goal = { state: isLost ? 'failed' : 'locked', timeout: patience };
  return client.request('frame').then((before) =>
    client
      .request('signal', { lost: isLost })
      .then(() => client.request('waitTuner', goal, patience))
      .then(() => client.request('waitFlush', { after: before.frame, timeout: patience }, patience))
  );
}

/**
 * @param press presses keys: press(client, words) gives a promise
 * @param keep saves the screen: keep(file name, what it shows) gives a promise
 */
function showTelevision(client, press, keep) {
  const channel = (keys, name, text) =>
    press(client, keys)
      .then(() => captionsSeen(client, Date.now()))
      .then(() => press(client, 'Info'))
      .then(() => keep(name, text));
  return press(client, 'MediaStop GoBack Guide')
    .then(() => channel('Subtitle', 'channel-2.png', 'a television channel, banner and captions'))
    .then(() => channel('5', 'channel-5.png', 'another one, with subtitles'))
    .then(() => press(client, 'Enter'))
    .then(() => keep('channels.png', 'the list of channels'))
    .then(() => press(client, 'GoBack AudioVolumeUp*3'))
    .then(() => keep('volume.png', 'the volume'))
    .then(() => loseSignal(client, true))
    .then(() => keep('no-signal.png', 'no signal'))
    .then(() => loseSignal(client, false));
}

module.exports = { showTelevision };
