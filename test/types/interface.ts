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
