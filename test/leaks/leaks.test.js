'use strict';

// What a process leaves behind is exactly what the module gives up by design, counted by the leak
// checker of the address sanitizer, which this process and its children have to run under.

const test = require('tape');
const { runScript } = require('../script/support/process');

const OPTIONS = {
  // Long and exact call chains, which the runtime's compiler leaves no frame pointers for; each of
  // a library and a function.
  ASAN_OPTIONS: [
    'detect_leaks=1',
    'fast_unwind_on_malloc=0',
    'malloc_context_size=15',
    'stack_trace_format="frame %m %f"'
  ].join(':'),
  // The checker reads beyond the end of the runtime's thread-local blocks, and dies of it.
  LSAN_OPTIONS: 'use_tls=0'
};

const PRELUDE = `
const { openInput, openTuner, newPlayer, follow, endAll } = support('workers');
const { collect } = support('collection');
const times = (count, make) => Array.from({ length: count }, make);
const loadImage = () => new Promise((resolve) =>
  quiravent.graphicServices.loadImage('path', () => resolve()));
const loadFont = () => new Promise((resolve) =>
  quiravent.graphicServices.loadFont('path', 9, () => resolve()));
const listen = (kind) => newPlayer(kind).then((made) => follow(kind, made));
`;

const OWN_FRAME = /^frame \S*\/(?:quiravent\.node|recorder\.node|libquiravent_\w+\.so) (.*)$/;

/** The function of ours that a call chain begins in; null for a chain that is all others'. */
function placeOf(chain) {
  const functions = chain.map((line) => (line.trim().match(OWN_FRAME) || [])[1]);
  const own = functions.find((name) => name && !/^(Nan|std|void std|__gnu)/.test(name));
  return own ? own.replace(/[(<].*/, '') : null;
}

/** The number of objects lost, by the function of ours that made them. */
function lossesIn(report) {
  const losses = {};
  report.split('\n\n').forEach((block) => {
    const found = block.match(/^(?:Direct|Indirect) leak of \d+ byte\(s\) in (\d+) object/m);
    const place = found && placeOf(block.split('\n'));
    if (place) losses[place] = (losses[place] || 0) + Number(found[1]);
  });
  return losses;
}

// [what happens, script that gives a promise or nothing, objects that are lost]
const CASES = [
  ['nothing', '', {}],
  [
    'what dies with its script object',
    `quiravent.graphicServices.getTargetCanvas().setColor('red');
     times(5, () => quiravent.graphicServices.createCanvas(8, 8).setColor('blue'));
     times(3, () => quiravent.tunerServices.getPlayer(1, 2, 3).start());
     times(3, () => new quiravent.canvas());
     return Promise.all(times(4, loadFont).concat(times(4, loadImage)));`,
    {}
  ],
  [
    'jobs that fail',
    `['LoadImage', 'LoadFont'].forEach((name) =>
       recorder.always('pl_gfx_' + name, { status: 5, outputs: { handle: 0 } }));
     ['UrlPlayer', 'AdPlayer'].forEach((name) =>
       recorder.always('pl_media_Create' + name, { status: 5, outputs: { handle: 0 } }));
     recorder.always('pl_persistent_GetPersistent', { status: 5, outputs: { handle: 0 } });
     quiravent.dataServices.getPersistent('context');
     const refused = (name) => new Promise((resolve) =>
       quiravent.mediaServices[name]('url', {}, () => resolve()));
     return Promise.all([loadFont(), loadImage(), refused('getPlayer'),
       refused('getAdPlayer')]);`,
    {}
  ],
  [
    'players and stores, which the module gives up',
    `times(4, (each, index) => quiravent.dataServices.getPersistent('context ' + index).get('key'));
     return Promise.all(times(3, () => newPlayer('media')).concat(times(2, () => newPlayer('ad'))));`,
    {
      'DataServices::GetPersistent': 4,
      'MediaServices::GetPlayer': 3,
      'MediaServices::GetAdPlayer': 2
    }
  ],
  [
    'the workers made last, which stay in their places',
    `const players = ['media', 'ad'].map(listen);
     return Promise.all(players).then((followers) =>
       endAll(followers.concat(openInput(), openTuner('selector', 'option'))));`,
    {}
  ],
  [
    'earlier workers: two listeners of each',
    `const openAndEnd = () => endAll([openInput()]);
     return openAndEnd().then(openAndEnd).then(openAndEnd);`,
    { 'quiravent::NewCallback': 4 }
  ],
  [
    'every function of the device fails in every way',
    `const { rows, prepare } = support('../../faults/rows');
     const { injectAll } = support('../../faults/inject');
     return prepare().then(() => injectAll(rows));`,
    // Three players of each kind, six workers of keys and six of the tuner, three of each kind of
    // player, less the last of each, which stays; and the stores that could be opened.
    {
      'DataServices::GetPersistent': 2,
      'MediaServices::GetPlayer': 2,
      'MediaServices::GetAdPlayer': 2,
      'quiravent::NewCallback': 28
    }
  ]
];

CASES.forEach((row) => {
  test(`lost: ${row[0]}`, (t) => {
    const source = `${PRELUDE}
      Promise.resolve((() => { ${row[1]} })())
        .then(() => collect())
        .then(() => say('done'))
        .then(() => process.exit());`;
    return runScript(source, undefined, OPTIONS).then((result) => {
      t.ok(/done$/.test(result.stdout), result.stderr.slice(0, 1000));
      t.deepEqual(lossesIn(result.stderr), row[2]);
    });
  });
});
