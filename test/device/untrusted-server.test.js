'use strict';

// A server that only itself vouches for, as an application meets it on the desktop device.

const path = require('path');
const { spawnSync } = require('child_process');
const test = require('tape');
const { medium, newFolder } = require('./support/files');
const { Application } = require('./support/controlled');

/** Makes key.pem and certificate.pem in a folder. */
function makeCertificate(folder) {
  const words = ['req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-days', '2'].concat(
    ['-subj', '/CN=localhost', '-addext', 'subjectAltName=DNS:localhost'],
    ['-keyout', path.join(folder, 'key.pem'), '-out', path.join(folder, 'certificate.pem')]
  );
  return spawnSync('openssl', words).status;
}

test('a server that nobody vouches for is not believed', (t) => {
  const folder = newFolder(t);
  t.equal(makeCertificate(folder), 0);
  const source = `
    const fs = require('fs');
    const read = (name) => fs.readFileSync(${JSON.stringify(folder)} + '/' + name + '.pem');
    let requests = 0;
    const options = { key: read('key'), cert: read('certificate') };
    const server = require('https').createServer(options, (request, response) => {
      requests += 1;
      response.end(fs.readFileSync(${JSON.stringify(medium('short.mp4'))}));
    });
    const tryMedia = (url) => quiravent.mediaServices.getPlayer(url, {}, (error, player) => {
      player.registerListener((name) => {
        if (name !== 'fetch_error' && name !== 'fetch_ready') return;
        say(name + ' after ' + requests + ' requests');
        process.exit(0);
      });
      // An event that finds its worker not yet waiting lies until the next one.
      setTimeout(() => player.fetch(), 300);
    });
    server.listen(0, () => {
      const url = 'https://localhost:' + server.address().port + '/short.mp4';
      quiravent.graphicServices.loadImage(url, (error) => {
        say(error.message);
        tryMedia(url);
      });
    });`;
  const application = new Application(t, source, { UV_THREADPOOL_SIZE: '8' });
  return application.end.then((end) => {
    t.deepEqual(end, { code: 0, signal: null });
    t.deepEqual(application.said(), ['Error on loading image', 'fetch_error after 0 requests']);
  });
});
