'use strict';

// Plays a film in a part of the screen, and says what happens.
//
//   node examples/play-video [URL] [POSITION]

const path = require('path');
const quiravent = require('quiravent');

const sample = path.join(__dirname, '..', '..', 'build', 'media', 'film.mp4');
const url = process.argv[2] || sample;
const position = Number(process.argv[3] || 0); // in ms, as all times of a player
const bounds = { x: 160, y: 90, w: 960, h: 540 };

// Video lies below the graphics: it is seen where the screen's canvas is transparent.
const screen = quiravent.graphicServices.getTargetCanvas();
screen.setColor('#16304a');
screen.fillRect(0, 0, 1280, 720);
screen.clearRect(bounds);
screen.flush();

function follow(player) {
  // The last picture stays for a moment; then the player gives everything back.
  const end = () => setTimeout(() => player.unload(), 500);

  const onEvent = (name, value) => {
    console.log(name, value);
    if (name === 'playback_ready') console.log('playing', player.getTime());
    if (/_error$|_completed$|_abort$/.test(name)) end();
  };
  const onEnd = () => console.log('the player is gone');

  // Events are told from here on: those from before are lost.
  player.registerListener(onEvent, onEnd, (error) => console.error(error));
}

// Players are made in the background; the callback gets an error or the player.
quiravent.mediaServices.getPlayer(url, bounds, (error, player) => {
  if (error) throw new Error(error.message);
  follow(player);
  player.seek(position);
  player.start();
});
