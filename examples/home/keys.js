'use strict';

// The remote control reports a key as the number of its code, in text. The application knows keys
// by names; a key that isn't listed has no meaning to it.

const names = {
  13: 'enter',
  19: 'pause',
  37: 'left',
  38: 'up',
  39: 'right',
  40: 'down',
  48: '0',
  49: '1',
  50: '2',
  51: '3',
  52: '4',
  53: '5',
  54: '6',
  55: '7',
  56: '8',
  57: '9',
  403: 'red',
  404: 'green',
  405: 'yellow',
  406: 'blue',
  412: 'rewind',
  413: 'stop',
  415: 'play',
  417: 'forward',
  427: 'channelUp',
  428: 'channelDown',
  447: 'volumeUp',
  448: 'volumeDown',
  449: 'mute',
  457: 'info',
  458: 'guide',
  460: 'subtitle',
  461: 'back',
  463: 'playPause'
};

/** The name of the key with a code such as "37"; undefined for one without a meaning here. */
function keyName(code) {
  return names[code];
}

module.exports = { keyName };
