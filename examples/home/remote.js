'use strict';

const quiravent = require('quiravent');
const { keyName } = require('./keys');

/**
 * Takes the keys of the remote control from now on: onKey(name) is called for each press of one that
 * has a meaning. onFront() is called when the television has the application in front again.
 */
function listen(onKey, onFront) {
  const onEvent = (name, data) => {
    if (name === 'keypress' && keyName(data)) onKey(keyName(data));
    if (name === 'runtimestatechange' && data === 'running') onFront();
  };
  new quiravent.InputWorker(
    onEvent,
    () => {},
    (error) => console.error(error)
  );
  // From here on changes of the runtime state are told, too.
  quiravent.platformServices.initProperties();
}

module.exports = { listen };
