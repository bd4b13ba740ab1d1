'use strict';

const { fileOf } = require('../pictures');

/** From the file to pixels that can be drawn, one picture after the other. */
function decoded(name, aim, file) {
  return {
    name,
    aim,
    drawsNothing: true,
    ours: ({ newCanvas, load }) => ({
      canvas: newCanvas(),
      frame: () => load(fileOf(file)).then((image) => image.release())
    }),
    // Drawing a pixel of it, since decoding is put off until then.
    peer: ({ newContext, load, settle }) => {
      const context = newContext();
      return {
        context,
        frame: () =>
          load(fileOf(file)).then((image) => {
            context.drawImage(image, 0, 0, 1, 1, 0, 0, 1, 1);
            settle(context);
          })
      };
    }
  };
}

module.exports = [
  decoded('decode PNG', 1.4, 'screen.png'),
  decoded('decode JPEG', 2.7, 'screen.jpg'),
  Object.assign(decoded('decode WebP', 1.25, 'screen.webp'), { without: ['canvas'] }),
  decoded('decode 1080p JPEG', 2.8, 'large.jpg'),
  decoded('decode poster', 3.3, 'poster-0.jpg')
];
