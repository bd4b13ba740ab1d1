'use strict';

// How a script runtime that knows nothing of sanitizers runs what is built with them: the
// sanitizer's library is loaded before anything else, and reports go to files.

const fs = require('fs');
const path = require('path');
const { mustRun, root } = require('./run');

/** What the thread sanitizer is told of others, as its option. */
const suppressions = `suppressions=${path.join(root, 'test', 'sanitizers', 'tsan.supp')}`;

/** What native programs need that are built with the thread sanitizer, of the environment. */
const nativeVariables = { TSAN_OPTIONS: suppressions };

/** By preset: the library, how many times slower all is with it, and the variables with its options. */
const sanitizers = {
  asan: {
    library: 'libasan.so',
    slowness: 4,
    variables: {
      // Signals end a process as they do without the sanitizer, since tests look for them; of what
      // outlives a process there is a test of its own; and tests that look at the memory of a
      // process would see what is kept back of memory that was freed.
      ASAN_OPTIONS: ['handle_segv=0', 'handle_abort=0', 'detect_leaks=0', 'quarantine_size_mb=8'],
      UBSAN_OPTIONS: ['print_stacktrace=1']
    }
  },
  tsan: {
    library: 'libtsan.so',
    slowness: 8,
    variables: {
      // The runtime isn't instrumented: what its threads do among themselves can't be judged.
      TSAN_OPTIONS: [
        'ignore_noninstrumented_modules=1',
        'handle_segv=0',
        'handle_abort=0',
        'second_deadlock_stack=1',
        suppressions
      ]
    }
  }
};

function libraryFile(name) {
  const file = mustRun('g++', [`-print-file-name=${name}`], { capture: true }).stdout.trim();
  return fs.realpathSync(file);
}

/** One sanitizer's way of running scripts, and what it had to report. */
class SanitizedRun {
  constructor(preset) {
    this.sanitizer = sanitizers[preset];
    this.folder = path.join(root, 'build', preset, 'reports');
    mustRun('rm', ['-rf', this.folder]);
    fs.mkdirSync(this.folder, { recursive: true });
  }

  /** What to add to the environment. */
  variables() {
    const log = `log_path=${path.join(this.folder, 'report')}`;
    const variables = {
      LD_PRELOAD: libraryFile(this.sanitizer.library),
      QUIRAVENT_SLOWNESS: String(this.sanitizer.slowness)
    };
    Object.keys(this.sanitizer.variables).forEach((name) => {
      variables[name] = this.sanitizer.variables[name].concat(log).join(':');
    });
    return variables;
  }

  /** The text of each report, one for a process. */
  reports() {
    const files = fs.readdirSync(this.folder).sort();
    return files.map((name) => fs.readFileSync(path.join(this.folder, name), 'utf8'));
  }
}

module.exports = { SanitizedRun, nativeVariables };
