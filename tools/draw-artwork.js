'use strict';

// node tools/draw-artwork.js [FOLDER]: draws the posters and the background of the sample
// application into a folder, by default build/artwork. Quick when nothing has changed.

const { main, root } = require('./lib/run');
const path = require('path');
const { drawArtwork } = require('./artwork/draw');

main((words) => {
  drawArtwork(path.resolve(words[0] || path.join(root, 'build', 'artwork')));
});
