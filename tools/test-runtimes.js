'use strict';

// npm run test:runtimes [-- NAME...]: the module under every runtime from that of the set-top box to
// today's, on this processor and on 32-bit ARM in an emulator. A table of runtime by suite comes
// last, and under it "N passed, M failed". NAME is a runtime of the table, such as x64-20.11.0.

const { main } = require('./lib/run');
const { testRuntimes } = require('./lib/runtime-suites');
const { setup } = require('./lib/setup');

main((words) => {
  setup(['build', 'arm']);
  const total = testRuntimes(words);
  console.log(`\n${total.passed} passed, ${total.failed} failed`);
  return total.failed === 0 && total.passed > 0 ? 0 : 1;
});
