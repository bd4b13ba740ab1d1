'use strict';

const fs = require('fs');
const path = require('path');
const { execFile } = require('child_process');
const test = require('tape');
const { inFolder, inSequence, launch } = require('./support/launcher');

const LINEUP = {
  duration: 1,
  transportStreamId: 7,
  services: [
    {
      id: 101,
      name: 'Canal Educação',
      video: { width: 160, height: 96, pid: 400 },
      audio: [{ pid: 401 }, { pid: 402, language: 'eng', codec: 'mp2' }],
      present: { name: 'Ciência', start: '2026-11-21T20:00:00-03:00', duration: 60 }
    },
    { id: 102, name: 'Rádio', video: null, audio: [{ pid: 500 }] }
  ]
};

/** Resolves with what FFmpeg's tool finds in a file. */
function probe(file) {
  const words = ['-v', 'error', '-show_programs', '-of', 'json', file];
  return new Promise((resolve, reject) => {
    execFile('ffprobe', words, { maxBuffer: 1 << 24 }, (error, output) =>
      error ? reject(error) : resolve(JSON.parse(output))
    );
  });
}

test('a multiplex is made that others read, always the same, and that passes the check', (t) =>
  inFolder((folder, write) => {
    write('lineup.json', JSON.stringify(LINEUP));
    const read = (name) => fs.readFileSync(path.join(folder, name));
    const make = (name) =>
      launch(['lineup', 'make', 'lineup.json', name], {}, folder).then((result) =>
        t.deepEqual([result.code, result.stdout, result.stderr], [0, '', ''])
      );
    return make('one.ts')
      .then(() => make('two.ts'))
      .then(() => t.ok(read('one.ts').equals(read('two.ts')), 'the same bytes'))
      .then(() => probe(path.join(folder, 'one.ts')))
      .then((found) => {
        t.deepEqual(
          found.programs.map((one) => [one.program_id, one.tags.service_name]),
          [
            [101, 'Canal Educação'],
            [102, 'Rádio']
          ]
        );
        t.deepEqual(
          found.programs.map((one) => one.streams.map((stream) => [stream.id, stream.codec_name])),
          [
            [
              ['0x190', 'h264'],
              ['0x191', 'aac'],
              ['0x192', 'mp2']
            ],
            [['0x1f4', 'aac']]
          ]
        );
      })
      .then(() => launch(['lineup', 'check', 'one.ts'], {}, folder))
      .then((result) => {
        t.deepEqual([result.code, result.stderr], [0, '']);
        t.ok(/^transport stream 7: 1\.\d\d s at \d+ bit\/s\n/.test(result.stdout), result.stdout);
        t.ok(/\n101 Canal Educação, clock 400, map \d+\n {2}400 {2}H\.264/.test(result.stdout));
        t.ok(/\n {2}402 {2}MPEG audio \(eng\) .*\n {2}on: Ciência\n/.test(result.stdout));
      })
      .then(() => launch(['lineup', 'check', '--json', 'one.ts'], {}, folder))
      .then((result) => {
        const found = JSON.parse(result.stdout);
        t.deepEqual([found.ok, found.problems, found.services.length], [true, [], 2]);
        t.equal(found.services[0].present.start, 1795302000);
      });
  }));

test('what fails is told in one line with status 1, and leaves nothing behind', (t) =>
  inFolder((folder, write) => {
    write('bad.json', '{"services":[{"name":"A","video":{"width":5}}]}');
    write('good.json', '{"duration":1,"services":[{"name":"A","video":null}]}');
    write('kept.ts', 'kept');
    write('text.ts', 'no packets');
    const cases = [
      [['make', 'bad.json', 'kept.ts'], /bad\.json: services\[0\]\.video\.width is 5; allowed: /],
      [['make', 'none.json', 'kept.ts'], /none\.json: the line-up can't be read: no such file/],
      [['make', 'good.json', 'no/out.ts'], /no\/out\.ts can't be written: No such file/],
      [['check', 'none.ts'], /none\.ts can't be read: no such file/]
    ];
    const before = fs.readdirSync(folder);
    return inSequence(cases, (one) =>
      launch(['lineup'].concat(one[0]), {}, folder).then((result) => {
        t.deepEqual([result.code, result.stdout], [1, ''], one[0].join(' '));
        t.ok(/^quiravent: lineup: .*\n$/.test(result.stderr), result.stderr);
        t.ok(one[1].test(result.stderr), result.stderr);
      })
    )
      .then(() => {
        t.deepEqual(fs.readdirSync(folder), before);
        t.equal(fs.readFileSync(path.join(folder, 'kept.ts'), 'utf8'), 'kept');
      })
      .then(() => launch(['lineup', 'check', 'text.ts'], {}, folder))
      .then((result) => {
        t.deepEqual([result.code, result.stderr], [1, '']);
        t.ok(/\nproblem: there are no packets/.test(result.stdout), result.stdout);
      });
  }));

test('the schema of descriptions is printed', (t) =>
  launch(['lineup', 'schema']).then((result) => {
    t.equal(result.code, 0);
    t.deepEqual(JSON.parse(result.stdout).required, ['services']);
  }));

test('a builder that is missing is told with the command that makes it', (t) =>
  inFolder((folder, write) => {
    write('quiravent.node', '');
    return launch(['lineup', 'schema'], { QUIRAVENT_BUILD: folder }).then((result) => {
      t.equal(result.code, 1);
      t.ok(/quiravent-lineup' isn't built; build it with 'npm run build'/.test(result.stderr));
    });
  }));

test('the examples of the documentation can be made', (t) =>
  inFolder((folder, write) => {
    const page = fs.readFileSync(path.join(__dirname, '../../docs/lineup.md'), 'utf8');
    const examples = page
      .split('```json\n')
      .slice(1)
      .map((part) => JSON.parse(part.split('```')[0]));
    t.equal(examples.length, 2);
    return inSequence(examples, (example) => {
      // The medium that the page names exists in its reader's folder only.
      example.services.forEach((service) => delete service.media);
      write('example.json', JSON.stringify(example));
      return launch(['lineup', 'make', 'example.json', 'out.ts'], {}, folder).then((result) =>
        t.deepEqual([result.code, result.stderr], [0, ''])
      );
    });
  }));
