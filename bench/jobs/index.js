'use strict';

// Jobs in the background: 40 posters loaded all at once, from files to pixels that can be drawn.
// The peers' are each drawn by a pixel, since they put decoding off until then.

const { processTime } = require('../lib/clocks');
const { contest, ratio, rowsOf } = require('../lib/contest');
const { printRow, readOptions, writeRows } = require('../lib/table');
const { openCanvases, openNapi, openOurs } = require('../graphics/contestants');
const { filesOf } = require('../graphics/pictures');

const SCENE = '40 posters at once';
const AIM = 1.5;
const WIDTHS = [20, 9, 9, 8, 5];

function ownContestant(side, files) {
  const frame = () =>
    Promise.all(files.map(side.load)).then((images) => images.forEach((image) => image.release()));
  return { name: side.name, single: true, frame };
}

function peer(side, files) {
  const context = side.newContext();
  const frame = () =>
    Promise.all(files.map(side.load)).then((images) => {
      images.forEach((image) => context.drawImage(image, 0, 0, 1, 1, 0, 0, 1, 1));
      side.settle(context);
    });
  return { name: side.name, single: true, frame, prepare: () => global.gc && global.gc() };
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  if (options.cpuTime) options.clock = processTime;
  const napi = openNapi();
  const files = filesOf('poster');
  const peers = [napi, openCanvases()[0]].map((side) => peer(side, files));
  const results = await contest([ownContestant(await openOurs(), files)].concat(peers), options);
  printRow([SCENE, 'ms', 'spread', ': ours', 'aim'], WIDTHS);
  results.forEach((result, index) =>
    printRow(
      [
        result.name,
        result.median.toFixed(1),
        `${Math.round(result.spread * 100)} %`,
        index > 0 ? ratio(result, results[0]).toFixed(2) : '',
        index > 0 ? AIM : ''
      ],
      WIDTHS
    )
  );
  writeRows(options, rowsOf('jobs', SCENE, results, 1));
}

main();
