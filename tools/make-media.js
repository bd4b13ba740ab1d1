'use strict';

// node tools/make-media.js [FOLDER]: makes the film and the advertisement of the sample player in a
// folder, by default build/media. Quick when nothing has changed.

const path = require('path');
const { main, root } = require('./lib/run');
const { makeMedia } = require('./media/make');

main((words) => {
  makeMedia(path.resolve(words[0] || path.join(root, 'build', 'media')));
});
