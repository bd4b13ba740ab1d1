'use strict';

// A module that registers itself can be loaded once by a process. What else is tried is refused by
// the runtime, in its own words; the module goes on as if nothing had been.

const test = require('tape');
const { runScript } = require('./support/process');
const { modulePath } = require('./support/build');

const file = JSON.stringify(modulePath);

const LOAD_AGAIN = `
  delete require.cache[${file}];
  try {
    require(${file});
    say('loaded');
  } catch (error) {
    say(error instanceof Error ? error.message : 'odd');
  }
`;

const REFUSED = /^Module did not self-register/;
let hasThreads = true;
try {
  require('worker_threads');
} catch (error) {
  hasThreads = false;
}

const CASES = [
  {
    name: 'a second require gives the same object',
    source: `say(String(require(${file}) === quiravent));`,
    answer: /^true$/
  },
  { name: 'a second load', source: LOAD_AGAIN, answer: REFUSED },
  {
    name: 'a load from another context',
    source: `
      const text = ${JSON.stringify(`(function (require, say) {${LOAD_AGAIN}})`)};
      require('vm').runInNewContext(text, { Error })(require, say);`,
    answer: REFUSED
  },
  {
    name: 'a load from a thread of the runtime, where it has any',
    source: `
      let threads;
      try { threads = require('worker_threads'); } catch (error) { say(error.message); }
      if (threads) {
        const worker = new threads.Worker('require(' + ${JSON.stringify(file)} + ')', { eval: true });
        worker.on('error', (error) => say(error instanceof Error ? error.message : 'odd'));
        worker.on('exit', (code) => { if (code === 0) say('loaded'); });
        ended = new Promise((resolve) => worker.on('exit', resolve));
      }`,
    answer: hasThreads ? REFUSED : /^Cannot find module/
  }
];

CASES.forEach((each) => {
  test(each.name, (t) => {
    const source = `
      let ended = Promise.resolve();
      ${each.source}
      ended.then(() => {
        quiravent.graphicServices.createCanvas(2, 2).fillRect(0, 0, 1, 1);
        say(' ' + recorder.argsOf('pl_gfx_Canvas_FillRect').length);
      });`;
    return runScript(source).then((result) => {
      const answer = result.stdout.replace(/ 1$/, '');
      t.ok(each.answer.test(answer), answer || result.stderr);
      t.ok(result.stdout.endsWith(' 1'), 'the module goes on');
      t.equal(result.code, 0, 'and so does the process');
    });
  });
});
