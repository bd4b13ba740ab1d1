'use strict';

const data = require('./catalogue.json');

const all = [].concat.apply(
  [],
  data.rows.map((row) => row.items)
);

/** Every item once. */
const items = () => all;

const findItem = (id) => all.find((item) => item.id === id);

/** "2024 · 1 h 52 min · Drama · Portuguese" */
function factsOf(item) {
  const hours = Math.floor(item.minutes / 60);
  const length = hours > 0 ? `${hours} h ${item.minutes % 60} min` : `${item.minutes} min`;
  return [item.year, length, item.genre, item.language].join('  ·  ');
}

/** The rows of the home screen: one for each category, and what the viewer has kept, if anything. */
function rowsWith(kept) {
  const own = kept.map(findItem).filter((item) => item);
  return own.length > 0 ? data.rows.concat([{ title: 'My list', items: own }]) : data.rows;
}

module.exports = { background: data.background, factsOf, findItem, items, rowsWith };
