'use strict';

const { spawn } = require('child_process');

/** Starts an X server; resolves with { display, stop() } once it answers. */
function startDisplay() {
  return new Promise((resolve, reject) => {
    const words = ['-displayfd', '3', '-screen', '0', '1400x900x24', '-nolisten', 'tcp'];
    const server = spawn('Xvfb', words, { stdio: ['ignore', 'ignore', 'ignore', 'pipe'] });
    server.on('error', reject);
    server.stdio[3].once('data', (number) =>
      resolve({ display: `:${String(number).trim()}`, stop: () => server.kill() })
    );
  });
}

module.exports = { startDisplay };
