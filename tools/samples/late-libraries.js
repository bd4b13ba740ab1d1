'use strict';

// Has the device open the libraries that it opens when they are first wanted: those of media and of
// the network.

const quiravent = require('quiravent');

const BOUNDS = { x: 0, y: 0, w: 1280, h: 720 };

// A medium that isn't there, and a port of this machine where nobody listens.
quiravent.mediaServices.getPlayer('/nothing.mp4', BOUNDS, (error) => {
  if (error) throw new Error(error.message);
  quiravent.graphicServices.loadImage('http://127.0.0.1:1/', () => process.exit(0));
});
