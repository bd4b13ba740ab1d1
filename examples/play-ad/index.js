'use strict';

// Plays an advertisement, which fills the screen, and says how far it is.
//
//   node examples/play-ad [URL]

const path = require('path');
const quiravent = require('quiravent');

const sample = path.join(__dirname, '..', '..', 'build', 'media', 'advertisement.mp4');
const url = process.argv[2] || sample;

// Video lies below the graphics: they have to be transparent for it to be seen.
const screen = quiravent.graphicServices.getTargetCanvas();
screen.clearRect(0, 0, 1280, 720);
screen.flush();

// The rectangle has no meaning for an advertisement, but must not be missing.
quiravent.mediaServices.getAdPlayer(url, {}, (error, ad) => {
  if (error) throw new Error(error.message);

  const timer = setInterval(() => {
    const { now, end } = ad.getTime();
    if (end > 0) console.log(`${Math.round((100 * now) / end)} %`);
  }, 500);

  // However it ends, whatever it interrupted goes on.
  const goOn = () => {
    clearInterval(timer);
    ad.unload();
  };
  const onEvent = (name, value) => {
    console.log(name, value);
    if (/_error$|_completed$|_abort$/.test(name)) setTimeout(goOn, 500);
  };
  const onEnd = () => console.log('on with the film');

  ad.registerListener(onEvent, onEnd, (fault) => console.error(fault));
  ad.start();
});
