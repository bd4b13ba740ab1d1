'use strict';

const { spawn } = require('child_process');

/** The environment for programs of the system's, which no sanitizer is to look into. */
function systemVariables(variables) {
  return Object.assign({}, process.env, variables, { LD_PRELOAD: '' });
}

/** Starts an X server; resolves with { display, stop() } once it answers. */
function startDisplay() {
  return new Promise((resolve, reject) => {
    const words = ['-displayfd', '3', '-screen', '0', '1400x900x24', '-nolisten', 'tcp'];
    const server = spawn('Xvfb', words, {
      env: systemVariables(),
      stdio: ['ignore', 'ignore', 'ignore', 'pipe']
    });
    server.on('error', reject);
    server.on('exit', (code) => reject(new Error(`Xvfb ended with ${code}`)));
    server.stdio[3].once('data', (number) =>
      resolve({ display: `:${String(number).trim()}`, stop: () => server.kill() })
    );
  });
}

module.exports = { startDisplay, systemVariables };
