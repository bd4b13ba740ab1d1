'use strict';

// From the start of a process: until the exports are there, until a first picture is drawn and
// shown, and until 40 posters are loaded and drawn; with the memory that the process then has.
// Each is a process of its own, the contestants in turn.

const path = require('path');
const { spawnSync } = require('child_process');
const { median } = require('../lib/contest');
const { moduleFolder } = require('../lib/peers');
const { printRow, readOptions, writeRows } = require('../lib/table');
const { ensurePictures, filesOf } = require('../graphics/pictures');
const { loadNapi } = require('../lib/peers');

const own = path.join(__dirname, '..', '..');
const CONTESTANTS = {
  quiravent: {
    module: own,
    first:
      'const c = m.graphicServices.getTargetCanvas(); c.fillRect(0, 0, 1280, 720); c.flush(); done();',
    posters: `const c = m.graphicServices.getTargetCanvas(); let left = files.length;
      files.forEach((file, i) => m.graphicServices.loadImage(file, (error, image) => {
        c.composeScaled(image, { x: i * 20, y: 0, w: 144, h: 216 });
        if (--left === 0) { c.flush(); done(); }
      }));`
  },
  napi: browserLike('@napi-rs/canvas'),
  canvas: browserLike('canvas')
};

function browserLike(name) {
  const open = "const c = m.createCanvas(1280, 720), x = c.getContext('2d');";
  return {
    module: moduleFolder(name),
    first: `${open} x.fillRect(0, 0, 1280, 720); x.getImageData(0, 0, 1, 1); done();`,
    posters: `${open} const fs = require('fs');
      Promise.all(files.map((file) => m.loadImage(fs.readFileSync(file)))).then((images) => {
        images.forEach((image, i) => x.drawImage(image, i * 20, 0, 144, 216));
        x.getImageData(0, 0, 1, 1);
        done();
      });`
  };
}

/** Runs one process; answers milliseconds and MiB. */
function runOnce(contestant, stage) {
  const body = stage === 'require' ? 'done();' : contestant[stage];
  const script = `const cpuBegin = process.cpuUsage();
    const begin = process.hrtime();
    const m = require(${JSON.stringify(contestant.module)});
    const files = ${JSON.stringify(filesOf('poster'))};
    function done() {
      const took = process.hrtime(begin);
      const memory = process.memoryUsage().rss / 1048576;
      const cpu = process.cpuUsage(cpuBegin);
      process.stdout.write(JSON.stringify({ time: took[0] * 1e3 + took[1] / 1e6, memory,
        cpu: (cpu.user + cpu.system) / 1e3 }) + '\\n', () => process.exit(0));
    }
    ${body}`;
  const child = spawnSync(process.execPath, ['-e', script], { encoding: 'utf8' });
  if (child.status !== 0) throw new Error(child.stderr);
  return JSON.parse(child.stdout);
}

const WIDTHS = [22, 10, 9, 9, 9, 9];
const STAGES = { require: 'require', first: 'first picture', posters: '40 posters' };

function measure(stage, options) {
  const names = Object.keys(CONTESTANTS);
  const runs = names.map(() => []);
  for (let round = 0; round <= options.rounds; ++round) {
    names.forEach((name, index) => runs[index].push(runOnce(CONTESTANTS[name], stage)));
  }
  const key = options.cpuTime ? 'cpu' : 'time';
  const values = runs.map((all) => all.slice(1).map((one) => one[key]));
  return names.map((name, index) => {
    const memory = median(runs[index].slice(1).map((one) => one.memory));
    const ratio = median(values[index].map((value, round) => value / values[0][round]));
    const middle = median(values[index]);
    const spread = (Math.max(...values[index]) - Math.min(...values[index])) / middle;
    const cells = [STAGES[stage], name, middle.toFixed(1), `${Math.round(spread * 100)} %`];
    printRow(cells.concat(index === 0 ? '' : ratio.toFixed(2), memory.toFixed(0)), WIDTHS);
    return {
      table: 'start',
      scene: STAGES[stage],
      contestant: name,
      median: middle,
      spread,
      ratio,
      memory
    };
  });
}

function main() {
  const options = readOptions(process.argv.slice(2));
  ensurePictures(loadNapi());
  printRow(['', '', 'ms', 'spread', ': ours', 'MiB'], WIDTHS);
  const stages = Object.keys(STAGES).filter(
    (stage) => !options.only || stage.includes(options.only)
  );
  writeRows(options, [].concat(...stages.map((stage) => measure(stage, options))));
}

main();
