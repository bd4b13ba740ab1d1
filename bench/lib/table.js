'use strict';

// A table of a benchmark: options of its command line, its print, and its rows for bench.json.

const fs = require('fs');

/** @returns {{rounds, batchTime, only: string|null, cpuTime: boolean, json: string|null, quick: boolean}} */
function readOptions(words) {
  const options = {
    rounds: 9,
    batchTime: 25,
    only: null,
    cpuTime: false,
    json: null,
    quick: false
  };
  for (let i = 0; i < words.length; ++i) {
    if (words[i] === '--quick') Object.assign(options, { rounds: 5, batchTime: 6, quick: true });
    else if (words[i] === '--cpu-time') options.cpuTime = true;
    else if (words[i] === '--only') options.only = words[++i];
    else if (words[i] === '--json') options.json = words[++i];
    else
      throw new Error(`unknown option '${words[i]}'; there are --quick, --cpu-time, --only NAME`);
  }
  return options;
}

/** Prints rows of cells, the first column to the left and the others to the right. */
function printRow(cells, widths) {
  const padded = cells.map((cell, index) =>
    index === 0 ? String(cell).padEnd(widths[0]) : String(cell).padStart(widths[index])
  );
  console.log(padded.join(' '));
}

/** Keeps {table, scene, contestant, median, spread, ratio}, in milliseconds, if asked for. */
function writeRows(options, rows) {
  if (options.json) fs.writeFileSync(options.json, JSON.stringify(rows, null, 1) + '\n');
}

module.exports = { printRow, readOptions, writeRows };
