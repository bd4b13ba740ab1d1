'use strict';

const fs = require('fs');
const path = require('path');
const { execFile } = require('child_process');
const test = require('tape');
const { row } = require('../script/support/rows');
const { inFolder, inSequence, launch, runRows } = require('./support/launcher');

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
      runRows(t, [row(['lineup', 'make', 'lineup.json', name], 0, '', '')], {}, folder);
    return make('one.ts')
      .then(() => make('two.ts'))
      .then(() => t.ok(read('one.ts').equals(read('two.ts')), 'the same bytes'))
      .then(() => probe(path.join(folder, 'one.ts')))
      .then((found) => {
        const programs = found.programs.map((one) => [
          one.program_id,
          one.tags.service_name,
          one.streams.map((stream) => `${parseInt(stream.id, 16)} ${stream.codec_name}`).join()
        ]);
        t.deepEqual(programs, [
          row(101, 'Canal Educação', '400 h264,401 aac,402 mp2'),
          row(102, 'Rádio', '500 aac')
        ]);
      })
      .then(() => launch(['lineup', 'check', 'one.ts'], {}, folder))
      .then((result) => {
        t.deepEqual([result.code, result.stderr], [0, '']);
        [
          /^transport stream 7: 1\.\d\d s at \d+ bit\/s\n/,
          /\n101 Canal Educação, clock 400, map \d+\n {2}400 {2}H\.264/,
          /\n {2}402 {2}MPEG audio \(eng\) .*\n {2}on: Ciência\n/
        ].forEach((pattern) => t.ok(pattern.test(result.stdout), result.stdout));
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
    const error = (pattern) => new RegExp(`^quiravent: lineup: .*${pattern.source}.*\\n$`);
    const width = /bad\.json: services\[0\]\.video\.width is 5; allowed: /;
    const noFile = /none\.json: the line-up can't be read: no such file/;
    const before = fs.readdirSync(folder);
    const cases = [
      row(['lineup', 'make', 'bad.json', 'kept.ts'], 1, '', error(width)),
      row(['lineup', 'make', 'none.json', 'kept.ts'], 1, '', error(noFile)),
      row(
        ['lineup', 'make', 'good.json', 'no/out.ts'],
        1,
        '',
        error(/no\/out\.ts can't be written: No such/)
      ),
      row(['lineup', 'check', 'none.ts'], 1, '', error(/none\.ts can't be read: no such file/)),
      row(['lineup', 'check', 'text.ts'], 1, /\nproblem: there are no packets/, '')
    ];
    return runRows(t, cases, {}, folder).then(() => {
      t.deepEqual(fs.readdirSync(folder), before);
      t.equal(fs.readFileSync(path.join(folder, 'kept.ts'), 'utf8'), 'kept');
    });
  }));

test('the schema of descriptions is printed by the builder, where there is one', (t) =>
  inFolder((folder, write) => {
    write('quiravent.node', '');
    const hint = /quiravent-lineup' isn't built; build it with 'npm run build'/;
    const words = ['lineup', 'schema'];
    return runRows(t, [row(words, 0, /"required": \[\s*"services"\s*\]/, '')]).then(() =>
      runRows(t, [row(words, 1, '', hint)], { QUIRAVENT_BUILD: folder })
    );
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
      return runRows(t, [row(['lineup', 'make', 'example.json', 'out.ts'], 0, '', '')], {}, folder);
    });
  }));
