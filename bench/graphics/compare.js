'use strict';

// Looks at what each contestant draws, so that none is fast by leaving something out: what differs
// between our picture of a scene and a peer's must be a small part of what the scene changed.

const fs = require('fs');
const path = require('path');
const { HEIGHT, WIDTH } = require('./contestants');
const { openSides, scenes } = require('.');

const TOLERANCE = 0.25;
const LEVEL = 1.5; // of 255, that rounding and the like may come to

/** Premultiplied, so that the colour of transparent pixels doesn't count. */
function pixelsOf(context) {
  const { data } = context.getImageData(0, 0, WIDTH, HEIGHT);
  const pixels = new Uint8ClampedArray(data.length);
  for (let i = 0; i < data.length; i += 4) {
    for (let k = 0; k < 3; ++k) pixels[i + k] = (data[i + k] * data[i + 3]) / 255;
    pixels[i + 3] = data[i + 3];
  }
  return pixels;
}

function meanDifference(a, b) {
  let sum = 0;
  for (let i = 0; i < a.length; ++i) sum += Math.abs(a[i] - b[i]);
  return sum / a.length;
}

/** Opaque as the screen shows it: over black. */
function overBlack(pixels) {
  const out = Uint8ClampedArray.from(pixels);
  for (let i = 3; i < out.length; i += 4) out[i] = 255;
  return out;
}

/** What our side drew, by way of the screen, whose every frame is kept as a file. */
async function ourPicture(scene, sides, target, frame) {
  const played = await scene.ours(sides.ours);
  if (played.prepare) await played.prepare();
  played.frame(0);
  target.clearRect(0, 0, WIDTH, HEIGHT);
  target.compose(played.canvas, 0, 0);
  target.flush();
  const file = path.join(path.dirname(process.env.QUIRAVENT_SCREENSHOT), `${frame}.png`);
  const image = await sides.napi.library.loadImage(fs.readFileSync(file));
  const context = sides.napi.newContext();
  context.drawImage(image, 0, 0);
  return pixelsOf(context);
}

async function compareWith(peer, scene, ours) {
  const played = await scene.peer(peer);
  if (played.prepare) await played.prepare();
  const before = overBlack(pixelsOf(played.context));
  await played.frame(0);
  const after = overBlack(pixelsOf(played.context));
  const changed = meanDifference(before, after);
  const error = meanDifference(ours, after);
  const good = error <= LEVEL || error <= changed * (scene.tolerance || TOLERANCE);
  const text = `${error.toFixed(2)} of ${changed.toFixed(2)}`;
  console.log(`${good ? 'ok  ' : 'FAIL'} ${scene.name}, ${peer.name}: differs by ${text} levels`);
  return good;
}

async function main() {
  const only = process.argv[2];
  const sides = await openSides();
  const target = sides.ours.services.getTargetCanvas();
  const compared = scenes.filter(
    (scene) => !scene.drawsNothing && (!only || scene.name.includes(only))
  );
  let good = true;
  for (let i = 0; i < compared.length; ++i) {
    const ours = await ourPicture(compared[i], sides, target, i + 1);
    for (const peer of [sides.napi].concat(sides.canvases)) {
      if (!(await compareWith(peer, compared[i], ours))) good = false;
    }
  }
  process.exitCode = good ? 0 : 1;
}

main();
