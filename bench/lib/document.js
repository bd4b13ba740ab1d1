'use strict';

// Puts the figures of a run into docs/performance.md, between its markers, and their plot beside it.

const fs = require('fs');
const path = require('path');

const folder = path.join(__dirname, '..', '..', 'docs');
const PEERS = [
  { name: 'napi/8', label: '@napi-rs/canvas, eight frames per flush', color: '#2f6f9f' },
  { name: 'canvas best', label: 'canvas, fastest settings', color: '#c7772e' }
];

const ROW = 22;
const LEFT = 190;
const WIDTH = 520;
const LEAST = 0.2;
const MOST = 50;

const xOf = (ratio) => {
  const held = Math.min(Math.max(ratio, LEAST), MOST);
  return LEFT + (Math.log(held / LEAST) / Math.log(MOST / LEAST)) * WIDTH;
};

const text = (x, y, words, anchor) =>
  `<text x="${x.toFixed(1)}" y="${y}" text-anchor="${anchor || 'start'}">${words}</text>`;

function grid(height) {
  return [0.2, 0.5, 1, 2, 5, 10, 20, 50].map((ratio) => {
    const x = xOf(ratio).toFixed(1);
    const style = ratio === 1 ? 'stroke="#333"' : 'stroke="#ddd"';
    return `<line x1="${x}" y1="40" x2="${x}" y2="${height}" ${style}/>${text(xOf(ratio), 36, ratio, 'middle')}`;
  });
}

function bars(scene, ratios, y) {
  const parts = PEERS.map((peer, index) => {
    if (ratios[peer.name] === undefined) return '';
    const from = Math.min(xOf(1), xOf(ratios[peer.name]));
    const width = Math.abs(xOf(ratios[peer.name]) - xOf(1));
    const top = y + 2 + index * 8;
    return `<rect x="${from.toFixed(1)}" y="${top}" width="${width.toFixed(1)}" height="7" fill="${peer.color}"/>`;
  });
  return text(LEFT - 8, y + 14, scene, 'end') + parts.join('');
}

/** How many times as long each peer takes, on a logarithmic scale. */
function plot(scenes) {
  const height = 48 + scenes.length * ROW;
  const legend = PEERS.map(
    (peer, index) =>
      `<rect x="${LEFT + index * 270}" y="6" width="12" height="10" fill="${peer.color}"/>` +
      text(LEFT + 18 + index * 270, 15, `${peer.label} ÷ ours`)
  );
  return [
    `<svg xmlns="http://www.w3.org/2000/svg" width="${LEFT + WIDTH + 30}" height="${height + 8}" ` +
      'font-family="sans-serif" font-size="11" fill="#222">',
    '<rect width="100%" height="100%" fill="#fff"/>'
  ]
    .concat(legend, grid(height))
    .concat(scenes.map((scene, index) => bars(scene.name, scene.ratios, 44 + index * ROW)))
    .concat('</svg>', '')
    .join('\n');
}

function graphicsOf(rows) {
  const scenes = [];
  rows
    .filter((row) => row.table === 'graphics')
    .forEach((row) => {
      let scene = scenes.find((one) => one.name === row.scene);
      if (!scene) scenes.push((scene = { name: row.scene, ratios: {} }));
      if (row.contestant === 'quiravent') Object.assign(scene, row);
      if (row.aim) scene.aim = row.aim;
      scene.ratios[row.contestant] = row.ratio;
    });
  return scenes;
}

const figure = (value) => (value === undefined ? '–' : value.toFixed(value < 10 ? 2 : 1));
const line = (cells) => `| ${cells.join(' | ')} |`;

function graphicsTable(scenes) {
  const head = ['Scene', 'napi/8', 'Aim', 'napi/1', 'canvas', 'canvas best', 'Times the limit'];
  return [line(head), line(head.map(() => '---'))]
    .concat(
      scenes.map(({ name, ratios, aim }) =>
        line([
          name,
          ratios['napi/8'] < aim ? figure(ratios['napi/8']) : `**${figure(ratios['napi/8'])}**`,
          aim || '',
          figure(ratios['napi/1']),
          figure(ratios.canvas),
          figure(ratios['canvas best']),
          ratios.limit ? figure(1 / ratios.limit) : '–'
        ])
      )
    )
    .join('\n');
}

/** A table of other figures: how many times as long each contestant takes. */
function ratioTable(rows, table) {
  const own = rows.filter((row) => row.table === table);
  const contestants = [...new Set(own.map((row) => row.contestant))].slice(1);
  const scenes = [...new Set(own.map((row) => row.scene))];
  const cell = (scene, contestant) =>
    figure((own.find((row) => row.scene === scene && row.contestant === contestant) || {}).ratio);
  return [line(['', ...contestants]), line(['---', ...contestants.map(() => '---')])]
    .concat(scenes.map((scene) => line([scene, ...contestants.map((one) => cell(scene, one))])))
    .join('\n');
}

/** A table of figures in the unit that each scene names, and how they compare. */
function figureTable(rows, table) {
  const own = rows.filter((row) => row.table === table);
  const contestants = [...new Set(own.map((row) => row.contestant))];
  const scenes = [...new Set(own.map((row) => row.scene))];
  const head = ['', ...contestants, `times ${contestants[0]}`];
  return [line(head), line(head.map(() => '---'))]
    .concat(
      scenes.map((scene) => {
        const cells = own.filter((row) => row.scene === scene);
        const compared = cells.slice(1).map((row) => figure(row.ratio));
        return line([scene, ...cells.map((row) => row.shown), ...compared]);
      })
    )
    .join('\n');
}

/** MiB of each contestant's process at each stage of a start. */
function memoryTable(rows) {
  const own = rows.filter((row) => row.table === 'start');
  const contestants = [...new Set(own.map((row) => row.contestant))];
  const scenes = [...new Set(own.map((row) => row.scene))];
  const cell = (scene, contestant) =>
    own.find((row) => row.scene === scene && row.contestant === contestant).memory.toFixed(0);
  return [line(['MiB', ...contestants]), line(['---', ...contestants.map(() => '---')])]
    .concat(scenes.map((scene) => line([scene, ...contestants.map((one) => cell(scene, one))])))
    .join('\n');
}

function replaceBetween(document, name, content) {
  const [begin, end] = [`<!-- ${name} -->`, `<!-- end of ${name} -->`];
  const from = document.indexOf(begin) + begin.length;
  const to = document.indexOf(end);
  return document.slice(0, from) + '\n\n' + content + '\n\n' + document.slice(to);
}

function writeDocument({ machine, processors, clock, rows }) {
  const file = path.join(folder, 'performance.md');
  const scenes = graphicsOf(rows);
  let document = fs.readFileSync(file, 'utf8');
  const about = `${machine}, ${processors} processors, Node.js ${process.version}; ${clock}.`;
  document = replaceBetween(document, 'machine', about);
  document = replaceBetween(document, 'graphics', graphicsTable(scenes));
  ['script-calls', 'methods', 'start', 'jobs'].forEach((table) => {
    document = replaceBetween(document, table, ratioTable(rows, table));
  });
  document = replaceBetween(document, 'events', figureTable(rows, 'events'));
  document = replaceBetween(document, 'memory', memoryTable(rows));
  fs.writeFileSync(file, document);
  fs.writeFileSync(path.join(folder, 'performance.svg'), plot(scenes));
}

module.exports = { writeDocument };
