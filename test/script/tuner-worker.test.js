'use strict';

const test = require('tape');
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

test('the device has no callback before the first worker', (t) => {
  return recorder.fire(dtv(0)).then((count) => t.equal(count, 0));
});

test('the life of a worker is a selection', (t) => {
  recorder.reset();
  const tuner = openTuner('channel 7', 'fast');
  t.ok(tuner.object instanceof quiravent.TunerWorker);
  t.deepEqual(Object.getOwnPropertyNames(tuner.object), []);
  return selected()
    .then(() => {
      t.deepEqual(recorder.sequence(), [[SELECT, 'channel 7', 'fast', 'function']]);
      t.equal(tuner.object.closeTuner(1), undefined);
      return recorder.waitUntil(() => tuner.isComplete(), 'the completion');
    })
    .then(() => {
      t.deepEqual(tuner.log, [['complete']], 'without a report to wake it');
      t.deepEqual(
        recorder.calls().map((call) => [call.fn, call.thread]),
        [
          [SELECT, 'pool'],
          [UNSELECT, 'pool']
        ]
      );
    });
});

// [arguments, texts that arrive]
const TEXTS = [
  [
    ['a', ''],
    ['a', null]
  ],
  [
    ['', ''],
    ['', null]
  ],
  [
    ['', 'b'],
    ['', 'b']
  ],
  [
    ['a', undefined],
    ['a', 'undefined']
  ],
  [
    [undefined, null],
    ['undefined', 'null']
  ],
  [
    [5.5, true],
    ['5.5', 'true']
  ],
  [
    [[1, 2], {}],
    ['1,2', '[object Object]']
  ],
  [
    ['ação', '日本'],
    ['ação', '日本']
  ],
  [
    ['a\0b', '\0b'],
    ['a', null]
  ]
];

test('any value is taken as its text, and an empty option as none', (t) => {
  const check = (row) => {
    recorder.reset();
    const tuner = openTuner(row[0][0], row[0][1]);
    return selected()
      .then(() => endAll([tuner]))
      .then(() => {
        t.deepEqual(recorder.argsOf(SELECT), [row[1].concat('function')], JSON.stringify(row));
      });
  };
  return TEXTS.reduce((before, row) => before.then(() => check(row)), Promise.resolve());
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

test('the status of the selection is not looked at', (t) => {
  recorder.reset();
  const tuner = openTuner('a', '');
  return selected()
    .then(() => endAll([tuner]))
    .then(() => {
      recorder.reset();
      recorder.once(SELECT, { status: 6 });
      recorder.once(UNSELECT, { status: 6 });
      const refused = openTuner('a', '');
      return selected()
        .then(() => {
          t.equal(refused.isComplete(), false, 'it waits all the same');
          t.deepEqual(refused.log, []);
          return endAll([refused]);
        })
        .then(() => t.equal(recorder.calls(UNSELECT).length, 1));
    });
});

test('what is reported from within the selection stays until the next report', (t) => {
  recorder.reset();
  recorder.once(SELECT, { inside: [dtv(7), dtv(0)] });
  const tuner = openTuner('a', 'b');
  return selected()
    .then(() => {
      t.deepEqual(tuner.log, [], 'nobody woke the worker');
      return tuner.report(dtv(9));
    })
    .then((events) => {
      t.deepEqual(
        events.map((event) => event[1]),
        ['0,Sem Sinal', '1,', '0,Mídia não encontrada']
      );
      return endAll([tuner]);
    });
});

test('and is not heard at all when the next is closeTuner', (t) => {
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

test('closed while it selects, a worker unselects at once', (t) => {
  recorder.reset();
  const held = recorder.hold(SELECT);
  const tuner = openTuner('a', 'b');
  return held
    .blocked()
    .then(() => {
      tuner.close();
      t.deepEqual(recorder.calls(UNSELECT), []);
      held.open();
      return recorder.waitUntil(() => tuner.isComplete(), 'the completion');
    })
    .then(() => {
      t.deepEqual(tuner.log, [['complete']]);
      t.deepEqual(
        recorder.calls().map((call) => call.fn),
        [SELECT, UNSELECT]
      );
    });
});

test('closed before a pool thread takes it, a worker selects all the same', (t) => {
  const source = `
    process.env.UV_THREADPOOL_SIZE = '1';
    const held = recorder.hold('pl_media_CreateUrlPlayer');
    quiravent.mediaServices.getPlayer('url', {}, () => say('player '));
    held.blocked().then(() => {
      const log = (text) => () => say(text);
      new quiravent.TunerWorker('a', 'b', log('data '), log('complete ')).closeTuner();
      say(recorder.calls('${SELECT}').length + ' ');
      held.open();
    });
    process.on('exit', () => say(String(recorder.calls().map((call) => call.fn).slice(-2))));`;
  return says(t, source, `0 player complete ${SELECT},${UNSELECT}`);
});

test('after the end, reports and closing do nothing', (t) => {
  recorder.reset();
  const tuner = openTuner('a', 'b');
  return selected()
    .then(() => endAll([tuner]))
    .then(() => {
      const calls = recorder.calls().length;
      const length = tuner.log.length;
      for (let count = 0; count < 100; count += 1) tuner.close();
      return recorder
        .fire(recorder.rising(dtv(0), 100))
        .then((count) => t.equal(count, 100, 'the device may still report'))
        .then(quiet)
        .then(() => {
          t.equal(tuner.log.length, length);
          t.equal(recorder.calls().length, calls);
        });
    });
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

test('called plainly, TunerWorker makes an object all the same', (t) => {
  recorder.reset();
  const log = [];
  const note = (role) =>
    function () {
      log.push([role].concat(Array.prototype.slice.call(arguments)));
      recorder.recheck();
    };
  const TunerWorker = quiravent.TunerWorker;
  const tuner = TunerWorker('a', 'b', note('data'), note('complete'), note('error'));
  t.ok(tuner instanceof TunerWorker);
  return selected()
    .then(() => recorder.fire(dtv(0)))
    .then(() => recorder.waitUntil(() => log.length > 0, 'the report'))
    .then(quiet)
    .then(() => {
      tuner.closeTuner();
      return recorder.waitUntil(() => log.length > 1, 'the completion');
    })
    .then(() => {
      t.deepEqual(log, [['data', 'tunerlock', '1,'], ['complete']]);
      t.deepEqual(recorder.argsOf(SELECT), [['a', 'b', 'function']]);
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

test('a worker outlives its script object', (t) => {
  const source = `
    const tuner = support('workers').openTuner('a', 'b');
    tuner.object = null;
    recorder.waitForCalls('${SELECT}')
      .then(() => support('collection').collect())
      .then(() => tuner.report(recorder.event('dtv', 7)))
      .then((events) => {
        say(events.join() + ' ' + recorder.calls('${UNSELECT}').length);
        process.exit(0);
      });`;
  return says(t, source, 'tunerlock,0,Sem Sinal 0');
});

test('listeners that are no functions are noticed when they are called', (t) => {
  const source = `
    process.on('uncaughtException', (error) => say(error.name + ' '));
    const tuner = new quiravent.TunerWorker('a', 'b', 5);
    recorder.waitForCalls('${SELECT}').then(support('threads').quiet)
      .then(() => recorder.fire(recorder.event('dtv', 0)))
      .then(support('threads').quiet)
      .then(() => {
        say('closing ');
        tuner.closeTuner();
      });`;
  return says(t, source, 'TypeError closing TypeError ');
});
