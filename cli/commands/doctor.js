'use strict';

const { columns } = require('../lib/help');
const { checkMachine, INSTALL } = require('../lib/machine-checks');

function mark(check) {
  if (check.ok) return 'ok';
  return check.needed ? 'MISSING' : 'absent';
}

/** The commands that mend what is missing: each once, one for all packages. */
function commands(missing) {
  const mends = missing.map((check) => check.mend).filter((mend) => mend);
  const packages = mends
    .filter((mend) => mend.startsWith(INSTALL))
    .map((mend) => mend.slice(INSTALL.length));
  const others = mends.filter((mend) => !mend.startsWith(INSTALL));
  return (packages.length > 0 ? [INSTALL + packages.join('')] : [])
    .concat(others)
    .filter((command, index, all) => all.indexOf(command) === index)
    .map((command) => `  ${command}`);
}

/** A line for each check, and the commands for what is missing. */
function report(checks) {
  const missing = (needed) => checks.filter((check) => !check.ok && check.needed === needed);
  const parts = [
    ['To mend what is needed:'].concat(commands(missing(true))),
    ['For what is not needed:'].concat(commands(missing(false)))
  ];
  return [columns(checks.map((check) => [mark(check), check.name, check.detail]))]
    .concat(parts.filter((lines) => lines.length > 1).map((lines) => lines.join('\n')))
    .join('\n\n');
}

module.exports = {
  name: 'doctor',
  summary: 'tell what is missing on this machine, and the command that mends it',
  operands: [],
  options: [{ name: '--json', help: 'print the findings as JSON' }],
  notes: ['The exit status is 1 when something is missing that is needed.'],
  run(parsed) {
    const checks = checkMachine();
    const ok = checks.every((check) => check.ok || !check.needed);
    const text = parsed.options['--json'] ? JSON.stringify({ ok, checks }) : report(checks);
    process.stdout.write(`${text}\n`);
    return ok ? 0 : 1;
  }
};
