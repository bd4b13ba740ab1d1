'use strict';

// The remote control reports a key as the number of its code, in text. The application knows keys
// by names; a key that isn't listed has no meaning to it.

const names = {
  13: 'enter',
  37: 'left',
  38: 'up',
  39: 'right',
  40: 'down',
  403: 'red',
  404: 'green',
  405: 'yellow',
  406: 'blue',
  461: 'back'
};

/** The name of the key with a code such as "37"; undefined for one without a meaning here. */
function keyName(code) {
  return names[code];
}

module.exports = { keyName };
