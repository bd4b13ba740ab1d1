'use strict';

const { optionsOf } = require('./options');

/** Lines of cells, the cells below each other. */
function columns(rows) {
  const widthOf = (index) => rows.reduce((most, row) => Math.max(most, row[index].length), 0);
  const pad = (cell, index, row) =>
    index === row.length - 1 ? cell : cell + ' '.repeat(widthOf(index) - cell.length);
  return rows.map((row) => `  ${row.map(pad).join('  ')}`).join('\n');
}

function operandText(operand, index, operands) {
  const name = operand.many ? `${operand.name}...` : operand.name;
  const companion = operands[index + 1];
  if (operand.withPrevious) return `${name}]`;
  if (!operand.optional) return name;
  return companion && companion.withPrevious ? `[${name}` : `[${name}]`;
}

function optionText(option) {
  return option.value ? `${option.name} ${option.value}` : option.name;
}

/** What --help of a verb prints. */
function verbHelp(verb) {
  const operands = verb.operands.map(operandText).join(' ');
  const foreign = verb.takeForeign ? ' [RUNTIME OPTION...]' : '';
  return [
    `quiravent ${verb.name} [OPTION...]${foreign}${operands && ' '}${operands}`,
    verb.summary,
    columns(optionsOf(verb).map((option) => [optionText(option), option.help]))
  ]
    .concat(verb.notes || [])
    .join('\n\n');
}

/** What --help without a verb prints. */
function overview(verbs) {
  return [
    'quiravent VERB [OPTION...]',
    columns(verbs.map((verb) => [verb.name, verb.summary])),
    columns([
      ['VERB --help', 'what a verb takes'],
      ['--version', 'print the version and end']
    ])
  ].join('\n\n');
}

module.exports = { columns, overview, verbHelp };
