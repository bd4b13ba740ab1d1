'use strict';

// Signals that the launcher gets are meant for the application.

/**
 * npx hands on the Ctrl-C that the terminal has sent to the launcher as well: what comes within this
 * time is the same one. In ms.
 */
const SAME_MS = 500;

const ENDING = ['SIGINT', 'SIGTERM', 'SIGHUP', 'SIGQUIT'];

function milliseconds() {
  const now = process.hrtime();
  return now[0] * 1e3 + now[1] / 1e6;
}

/** Calls end(signal) for the first signal that asks for the end, kill() for any later one. */
function watchEnding(end, kill) {
  let first = null;
  ENDING.forEach((signal) => {
    process.on(signal, () => {
      const now = milliseconds();
      if (first === null) end(signal);
      else if (now - first > SAME_MS) kill();
      first = first === null ? now : first;
    });
  });
}

/** Ctrl-Z stops the application together with the launcher. */
function watchStopping(application) {
  process.on('SIGTSTP', () => {
    application.signal('SIGSTOP');
    process.kill(process.pid, 'SIGSTOP');
  });
  process.on('SIGCONT', () => application.signal('SIGCONT'));
}

module.exports = { watchEnding, watchStopping };
