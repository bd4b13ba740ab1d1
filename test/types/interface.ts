// Compiled by the lint run, never executed: what applications write must be accepted, and what the
// module doesn't take must be refused.

import * as quiravent from '../../lib';

const screen = quiravent.graphicServices.getTargetCanvas();
if (screen) {
  screen.setColor('crimson');
  screen.setColor({ r: 1, g: 2, b: 3, a: 255 });
  screen.fillRect({ x: 0, y: 0, w: 10, h: 10 });
  screen.fillRect(screen.getClip());
  screen.fillRect(0, 0, 10, 10);
  screen.drawEllipse('outline', 10, 10, 5, 5, 0, 360);
  screen.setClip();
  screen.flush();
  // @ts-expect-error a colour is no number
  screen.setColor(3);
  // @ts-expect-error a mode of another name is the default mode, silently
  screen.setPorterDuff('src_over');
  // @ts-expect-error four numbers or one object
  screen.fillRect(1, 2, 3);
}

quiravent.graphicServices.loadFont('font.ttf', 24, (error, font) => {
  if (error) console.log(error.message);
  if (font && screen) screen.setFont(font);
});

const store = quiravent.dataServices.getPersistent('types');
const value: string | undefined = store && store.get('key');
if (store) store.set('key', value);

const input = new quiravent.InputWorker((name, data) => console.log(name, Number(data)));
input.closeInput();
quiravent.platformServices.setRuntimeState('low_profile');
// @ts-expect-error only a boolean
quiravent.platformServices.toggleLiveDTV(1);

quiravent.mediaServices.getPlayer('film.mp4', { w: 1280, h: 720 }, (error, player) => {
  if (error || !player) return;
  player.registerListener((name, value) => {
    if (name === 'fetch_in_progress') console.log(Number(value));
    // @ts-expect-error no event has this name
    if (name === 'playback_paused') console.log(value);
  });
  const tracks = player.getTracks('audio');
  if (tracks) player.selectTrack('audio', tracks[0].id);
  const speed: number = player.setPlaybackSpeed(-2);
  console.log(speed, player.getBufferedTimes()[0].end, player instanceof quiravent.mediaPlayer);
  // @ts-expect-error a kind of track has one of four names
  player.getTracks('sound');
});

quiravent.mediaServices.getAdPlayer('ad.mp4', {}, (error, ad) => {
  if (error || !ad) return;
  const last = ad.getBufferedTimes();
  console.log(last && last.end, ad.getTime().now, ad instanceof quiravent.adPlayer);
  // @ts-expect-error an advertisement can't be wound
  ad.seek(0);
});
