'use strict';

// Reads a command line by a verb's table. A verb is
//
//   { name, summary, operands, options, notes, run(parsed) }
//
// An option is { name: '--for', value: 'SECONDS', type, help }, without `value` and `type` for a mere
// switch; `variable` names the environment variable that hands it to the application, `excludes` an
// option that contradicts it. An operand is { name, type, optional, many, withPrevious }; only the last
// may be many, and after an optional one there may only be such as are given together with it. A verb
// that runs a program says `program: true`: its first operand ends the options, and
// takeForeign(word, rest) gives the words of an option that isn't in the table, or null.

const { UsageError } = require('./failures');

const HELP = { name: '--help', help: 'print this and end' };

function optionsOf(verb) {
  return verb.options.concat([HELP]);
}

function fail(verb, text) {
  throw new UsageError(`${verb.name}: ${text}`);
}

function readValue(verb, name, type, word) {
  const value = type.read(word);
  if (value === undefined) fail(verb, `${name} is '${word}'; allowed: ${type.allowed}`);
  return value;
}

function refuseOption(verb, word) {
  const known = optionsOf(verb).map((option) => option.name);
  const foreign = verb.takeForeign ? ", and the runtime's options" : '';
  fail(verb, `unknown option '${word}'; allowed: ${known.join(', ')}${foreign}`);
}

/** Splits '--name=value', looks '--name' up; a short -h is the only one letter that has a meaning. */
function findOption(verb, word) {
  const equals = word.indexOf('=');
  const name = equals < 0 ? word : word.slice(0, equals);
  const wanted = name === '-h' ? HELP.name : name;
  const option = optionsOf(verb).find((one) => one.name === wanted);
  return { option, inline: equals < 0 ? undefined : word.slice(equals + 1) };
}

function valueOf(verb, option, inline, rest) {
  if (!option.type) {
    if (inline !== undefined) fail(verb, `${option.name} takes no value, not '${inline}'`);
    return true;
  }
  if (inline === undefined && rest.length === 0) {
    fail(verb, `${option.name} needs a value; allowed: ${option.type.allowed}`);
  }
  return readValue(verb, option.name, option.type, inline === undefined ? rest.shift() : inline);
}

function takeOption(verb, word, rest, parsed) {
  const found = findOption(verb, word);
  if (found.option) {
    parsed.options[found.option.name] = valueOf(verb, found.option, found.inline, rest);
    return;
  }
  const foreign = verb.takeForeign ? verb.takeForeign(word, rest) : null;
  if (!foreign) refuseOption(verb, word);
  parsed.foreign = parsed.foreign.concat(foreign);
}

function checkExclusions(verb, options) {
  verb.options.forEach((option) => {
    if (options[option.name] && options[option.excludes]) {
      fail(verb, `${option.name} contradicts ${option.excludes}; allowed: one of them`);
    }
  });
}

function readOperands(verb, words) {
  const last = verb.operands[verb.operands.length - 1];
  const most = last && last.many ? Infinity : verb.operands.length;
  if (words.length > most) {
    const names = verb.operands.map((operand) => operand.name).join(' ') || 'no operand';
    fail(verb, `unexpected '${words[most]}'; allowed: ${names}`);
  }
  verb.operands.forEach((operand, index) => {
    const isOptional = operand.optional || (operand.withPrevious && words.length < index);
    if (index >= words.length && !isOptional) {
      fail(verb, `${operand.name} is missing; allowed: ${operand.type.allowed}`);
    }
  });
  const operandAt = (index) => verb.operands[Math.min(index, verb.operands.length - 1)];
  return words.map((word, index) => {
    const operand = operandAt(index);
    return readValue(verb, operand.name, operand.type, word);
  });
}

/** Takes the words apart: the operands' words, and into parsed what the options say. */
function sortWords(verb, words, parsed) {
  const rest = words.slice();
  const operands = [];
  while (rest.length > 0 && !(verb.program && operands.length > 0)) {
    const word = rest.shift();
    if (word === '--') return operands.concat(rest);
    if (word[0] === '-' && word !== '-') takeOption(verb, word, rest, parsed);
    else operands.push(word);
  }
  return operands.concat(rest);
}

/**
 * The parsed line: { options: values by name such as '--for', true for a switch; operands: values;
 * foreign: the words that takeForeign took }. With --help nothing is demanded of the operands.
 * Throws UsageError.
 */
function parse(verb, words) {
  const parsed = { options: {}, operands: [], foreign: [] };
  const operands = sortWords(verb, words, parsed);
  if (parsed.options[HELP.name]) return parsed;
  checkExclusions(verb, parsed.options);
  parsed.operands = readOperands(verb, operands);
  return parsed;
}

module.exports = { parse, optionsOf };
