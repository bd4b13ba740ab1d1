'use strict';

const test = require('tape');
const { inSequence } = require('../lib/concurrently');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');
const { openTuner, endAll } = require('./support/workers');
const { quiet } = require('./support/threads');
const { runScript, says } = require('./support/process');

const SELECT = 'pl_dtv_Action_selectTransportStream';
const UNSELECT = 'pl_dtv_Action_unselectTransportStream';
const dtv = (error) => recorder.event('dtv', error);

/** Resolves once the worker made last waits. */
function selected() {
  return recorder.waitForCalls(SELECT).then(quiet);
}

// [selector, option, texts that arrive]
const TEXTS = [
  ['a', '', 'a', null],
  ['', '', '', null],
  ['', 'b', '', 'b'],
  ['a', undefined, 'a', 'undefined'],
  [undefined, null, 'undefined', 'null'],
  [5.5, true, '5.5', 'true'],
  [[1, 2], {}, '1,2', '[object Object]'],
  ['ação', '日本', 'ação', '日本'],
  ['a\0b', '\0b', 'a', null]
];

test('any value is taken as its text, and an empty option as none', (t) => {
  const check = (row) => {
    recorder.reset();
    const tuner = openTuner(row[0], row[1]);
    return selected()
      .then(() => endAll([tuner]))
      .then(() => {
        t.deepEqual(recorder.sequence()[0], [SELECT, row[2], row[3], 'function'], row.join());
      });
  };
  return inSequence(TEXTS, check);
});

test('texts are read from the selector on', (t) => {
  recorder.reset();
  const read = [];
  const text = (name) => ({ toString: () => read.push(name) && name });
  const tuner = openTuner(text('selector'), text('option'));
  t.deepEqual(read, ['selector', 'option']);
  return selected().then(() => endAll([tuner]));
});

// [code of the report, data of the event]
const REPORTS = [
  [0, '1,'],
  [1, '0,Recurso indisponível'],
  [2, '0,Operação indisponível'],
  [3, '0,Operação não permitida'],
  [5, '0,Parâmetro inválido'],
  [6, '0,Dados indisponíveis'],
  [7, '0,Sem Sinal'],
  [8, '0,Serviço não encontrado'],
  [9, '0,Mídia não encontrada'],
  [65535, '0,Funcionalidade não disponível'],
  [10, '0,Erro desconhecido'],
  [11, '0,Erro desconhecido'],
  [65534, '0,Erro desconhecido'],
  [65536, '0,Erro desconhecido'],
  [4294967295, '0,Erro desconhecido'],
  [0, '1,'],
  [0, '1,'],
  [7, '0,Sem Sinal'],
  [7, '0,Sem Sinal']
];

test('every report is an event, without a filter', (t) => {
  recorder.reset();
  const tuner = openTuner('a', 'b');
  return selected()
    .then(() => tuner.report(REPORTS.map((row) => dtv(row[0]))))
    .then((events) => {
      t.deepEqual(
        events,
        REPORTS.map((row) => ['tunerlock', row[1]])
      );
      // Code 4 is what marks are made of here.
      t.ok(tuner.log.some((entry) => entry[2] === '0,Operação não suportada'));
      t.ok(tuner.log.every((entry) => entry.length === 3));
      return endAll([tuner]);
    });
});

test('what is reported from within the selection is not heard when closeTuner comes next', (t) => {
  recorder.reset();
  recorder.once(SELECT, { inside: [dtv(7), dtv(0)] });
  const tuner = openTuner('a', 'b');
  return selected()
    .then(() => {
      tuner.close();
      tuner.close();
      return recorder.waitUntil(() => tuner.isComplete(), 'the completion');
    })
    .then(quiet)
    .then(() => {
      t.deepEqual(tuner.log, [['complete']]);
      t.equal(recorder.calls(UNSELECT).length, 1);
    });
});

test('the unselection comes before the completion', (t) => {
  recorder.reset();
  const tuner = openTuner('a', 'b');
  const held = recorder.hold(UNSELECT, { inside: [dtv(3)] });
  return selected()
    .then(() => {
      tuner.close();
      return held.blocked();
    })
    .then(() => recorder.fire([dtv(1), dtv(2)]))
    .then(quiet)
    .then(() => {
      t.deepEqual(tuner.log, [], 'nothing is passed on any more');
      held.open();
      return recorder.waitUntil(() => tuner.isComplete(), 'the completion');
    })
    .then(quiet)
    .then(() => t.deepEqual(tuner.log, [['complete']]));
});

test('a second worker takes the reports, and each unselects for itself', (t) => {
  recorder.reset();
  const first = openTuner('a', '');
  let second = null;
  return selected()
    .then(() => first.report(dtv(7)))
    .then(() => {
      second = openTuner('b', '');
      return recorder.waitForCalls(SELECT, 2).then(quiet);
    })
    .then(() => {
      t.deepEqual(recorder.calls(UNSELECT), [], 'none in between');
      return second.report([dtv(0), dtv(8)]);
    })
    .then((events) => {
      t.deepEqual(
        events.map((event) => event[1]),
        ['1,', '0,Serviço não encontrado']
      );
      t.equal(first.events().length, 1);
      first.close();
      return recorder.waitUntil(() => first.isComplete(), 'the completion of the first');
    })
    .then(() => {
      t.equal(recorder.calls(UNSELECT).length, 1);
      return second.report(dtv(9));
    })
    .then((events) => {
      t.deepEqual(events.pop(), ['tunerlock', '0,Mídia não encontrada']);
      return endAll([second]);
    })
    .then(() => {
      t.equal(recorder.calls(UNSELECT).length, 2);
      t.equal(first.heard().length, 2);
    });
});

test('without arguments, the word undefined is selected, twice', (t) => {
  const source = `
    recorder.clear();
    const made = [quiravent.TunerWorker(), new quiravent.TunerWorker()];
    recorder.waitForCalls('${SELECT}', 2).then(() => {
      say(JSON.stringify(recorder.sequence()));
      process.exit(5);
    });`;
  return runScript(source).then((result) => {
    t.equal(result.code, 5, result.stderr);
    const call = JSON.stringify([SELECT, 'undefined', 'undefined', 'function']);
    t.equal(result.stdout, `[${call},${call}]`);
  });
});

test('an exit tells the device nothing of open workers, and ends those that were closed', (t) => {
  // [threads for the two workers, what is done before, what the device hears]
  const rows = [
    [2, '', ''],
    [1, '', ''],
    [2, 'made[0].closeTuner();', `${UNSELECT}\n`],
    [1, 'made[1].closeTuner();', `${SELECT}\n${UNSELECT}\n`]
  ];
  const check = (row) => {
    const source = `
      process.env.UV_THREADPOOL_SIZE = '${row[0]}';
      const made = [1, 2].map(() => new quiravent.TunerWorker('a', 'b'));
      recorder.waitForCalls('${SELECT}', ${row[0]}).then(support('threads').quiet).then(() => {
        recorder.echo();
        ${row[1]}
        process.exit(0);
      });`;
    return says(t, source, row[2], row.join());
  };
  return inSequence(rows, check);
});
