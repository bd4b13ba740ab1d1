'use strict';

// node tools/keys.js [--check]: makes what is made from the list of remote keys, Keys.def: the
// constants for scripts and the documentation's table. With --check it only tells which of them
// aren't as the list wants them.

const fs = require('fs');
const path = require('path');

const root = path.join(__dirname, '..');
const source = path.join(root, 'devices', 'desktop', 'input', 'Keys.def');

/** All keys: { code, name, aliases, keyboard }, the last two being arrays. */
function readKeys() {
  const row = /REMOTE_KEY\((\d+),\s*(\w+),\s*"([^"]*)",\s*"([^"]*)"\)/g;
  const text = fs.readFileSync(source, 'utf8');
  const keys = [];
  for (let found = row.exec(text); found; found = row.exec(text)) {
    keys.push({
      code: Number(found[1]),
      name: found[2],
      aliases: found[3].split(' ').filter(Boolean),
      keyboard: found[4].split('|').filter(Boolean)
    });
  }
  return keys;
}

const ORIGIN = 'Made from devices/desktop/input/Keys.def by tools/keys.js.';

function constants(keys) {
  const rows = keys.map((key) => `  ${key.name}: ${key.code}`).join(',\n');
  return `'use strict';

// ${ORIGIN}

module.exports = Object.freeze({
${rows}
});
`;
}

function types(keys) {
  const rows = keys.map((key) => `  readonly ${key.name}: ${key.code};`).join('\n');
  return `// ${ORIGIN}

/** The codes of the remote control's keys, under their names. */
declare const keys: {
${rows}
};

export = keys;
`;
}

const code = (text) => '`' + text + '`';

function table(keys) {
  const cells = keys.map((key) => [
    code(key.name),
    String(key.code),
    key.aliases.map(code).join(', '),
    key.keyboard.map(code).join(', ')
  ]);
  const rows = [
    ['Name', 'Code', 'Also called', 'Keyboard'],
    ['---', '---', '---', '---']
  ].concat(cells);
  return rows.map((row) => `| ${row.join(' | ')} |`).join('\n');
}

function documentation(keys) {
  return `# Keys

<!-- ${ORIGIN} -->

An application is told of a key by its code, as decimal text: \`'37'\` for the arrow to the left.
\`require('quiravent/lib/keys')\` has the codes under the keys' names, as \`keys.ArrowLeft\` or
\`keys['5']\`.

The codes are those of the \`VK_\` constants of CEA-2014 that television applications know; the names
are those of \`KeyboardEvent.key\` in the W3C's UI Events. The control channel and the configuration
take a key by its name, by one of the other names (the last ones are those of the Linux kernel), in
capitals or not, or by its code. \`"5"\` is the digit, and the number \`5\` the code.

\`GoHome\` takes the application to the background: its press asks for the runtime state
\`low_profile\`, and only its release reaches the application.

A key that is held down for more than 500 ms repeats its press every 100 ms, and is released once.

${table(keys)}

The last column names the keys of a keyboard, as SDL calls them, that stand for a remote key. The
configuration's \`input.keyMap\` changes that:

\`\`\`json
{ "input": { "keyMap": { "F9": "MediaRecord", "Escape": "Exit", "M": null } } }
\`\`\`
`;
}

const products = [
  { file: path.join('lib', 'keys.js'), make: constants },
  { file: path.join('lib', 'keys.d.ts'), make: types },
  { file: path.join('docs', 'keys.md'), make: documentation }
];

/** The files that aren't as the list wants them. */
function staleProducts() {
  const keys = readKeys();
  return products.filter((product) => {
    const file = path.join(root, product.file);
    return !fs.existsSync(file) || fs.readFileSync(file, 'utf8') !== product.make(keys);
  });
}

function main(words) {
  const keys = readKeys();
  const stale = staleProducts();
  if (words.indexOf('--check') < 0) {
    for (const product of stale) {
      fs.writeFileSync(path.join(root, product.file), product.make(keys));
      console.log(`${product.file} is made anew`);
    }
    return 0;
  }
  for (const product of stale) console.error(`${product.file} is old: run node tools/keys.js`);
  return stale.length ? 1 : 0;
}

module.exports = { staleProducts };

if (require.main === module) process.exitCode = main(process.argv.slice(2));
