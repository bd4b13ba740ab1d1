'use strict';

// A module that registers itself can be loaded once by a process. What else is tried is answered by
// the runtime, each in its own words; here it counts that an answer is all that happens.

const test = require('tape');
const { runScript } = require('./support/process');
const { modulePath } = require('./support/build');

const LOAD_AGAIN = `
  delete require.cache[${JSON.stringify(modulePath)}];
  try {
    require(${JSON.stringify(modulePath)});
    say('loaded');
  } catch (error) {
    say(error instanceof Error ? 'refused' : 'odd');
  }
`;

const CASES = [
  {
    name: 'a second require gives the same object',
    source: `say(String(require(${JSON.stringify(modulePath)}) === quiravent));`,
    answers: ['true']
  },
  { name: 'a second load', source: LOAD_AGAIN, answers: ['loaded', 'refused'] },
  {
    name: 'a load from another context',
    source: `
      const text = ${JSON.stringify(`(function (require, say) {${LOAD_AGAIN}})`)};
      require('vm').runInNewContext(text, { Error })(require, say);`,
    answers: ['loaded', 'refused', 'odd']
  },
  {
    name: 'a load from a thread of the runtime',
    source: `
      let threads;
      try { threads = require('worker_threads'); } catch (error) { say('refused'); }
      if (threads) {
        const source = 'require(' + JSON.stringify(${JSON.stringify(modulePath)}) + ')';
        const worker = new threads.Worker(source, { eval: true });
        worker.on('error', (error) => say(error instanceof Error ? 'refused' : 'odd'));
        worker.on('exit', (code) => { if (code === 0) say('loaded'); });
      }`,
    answers: ['loaded', 'refused']
  }
];

CASES.forEach((each) => {
  test(each.name, (t) =>
    runScript(`${each.source}
      setTimeout(() => quiravent.graphicServices.createCanvas(2, 2).fillRect(0, 0, 1, 1), 300);`).then(
      (result) => {
        t.ok(each.answers.indexOf(result.stdout) >= 0, result.stdout || result.stderr);
        t.equal(result.code, 0, 'the process goes on, and the module with it');
      }
    )
  );
});
