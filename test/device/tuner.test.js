'use strict';

// Television as an application has it: selections, and what the tuner tells of them.

const fs = require('fs');
const path = require('path');
const test = require('tape');
const { Application } = require('./support/controlled');
const { multiplex, newFolder } = require('./support/files');

const SELECT = `
/** Says each report with the time since the selection in ms; tell() gets the report. */
function select(selector, option, tell, done) {
  const begun = Date.now();
  const onReport = (name, data) => {
    say(JSON.stringify([name, data, Date.now() - begun]));
    if (tell) tell(data);
  };
  return new quiravent.TunerWorker(selector, option, onReport, done || (() => {}), () => {});
}
`;

function start(t, source, variables) {
  return new Application(t, SELECT + source, variables).connect();
}

function reports(application) {
  return application.lines.map((line) => JSON.parse(line)).filter((one) => Array.isArray(one));
}

/** Asks nobody, since the application ends with its last report. */
function untilReports(application, count) {
  const all = reports(application);
  if (all.length >= count) return Promise.resolve(all);
  return new Promise((resolve) => setTimeout(resolve, 5)).then(() =>
    untilReports(application, count)
  );
}

const dataOf = (all) => all.map((report) => report[1]);

test('each selection is told its outcome, one after the other', (t) => {
  const cases = [
    [multiplex('mux.ts'), '', '1,'],
    [multiplex('missing.ts'), '', '0,Mídia não encontrada'],
    ['Um', 'program=1', '1,'],
    ['Dois', undefined, '0,Serviço não encontrado'],
    [multiplex('other.ts'), undefined, '1,'],
    [multiplex('mux.ts'), 'volume=1', '0,Parâmetro inválido'],
    ['http://localhost/mux.ts', '', '0,Operação não suportada'],
    ['adapter:250', 'system=isdb-t,frequency=479142857', '0,Funcionalidade não disponível'],
    [multiplex('garbage.ts'), 'bitrate=50000000', '0,Sem Sinal'],
    [multiplex('empty.ts'), '', '0,Dados indisponíveis']
  ];
  const source = `
    const cases = ${JSON.stringify(cases.map((one) => one.slice(0, 2)))};
    function next() {
      const one = cases.shift();
      if (!one) return say('{}');
      const worker = select(one[0], one[1] === null ? undefined : one[1],
        () => worker.closeTuner(), next);
    }
    next();`;
  const lineup = { multiplexes: [{ name: 'Um', source: multiplex('mux.ts') }] };
  const file = path.join(newFolder(t), 'lineup.json');
  fs.writeFileSync(file, JSON.stringify(lineup));
  return start(t, source, { QUIRAVENT_LINEUP: file, QUIRAVENT_LOG: 'silent' })
    .then((application) => untilReports(application, cases.length))
    .then((all) => {
      const expected = cases.map((one) => one[2]);
      t.deepEqual(dataOf(all), expected);
      t.ok(all.every((report) => report[0] === 'tunerlock'));
      t.comment(`locked after ${all[0][2]} ms, anew after ${all[4][2]} ms`);
    });
});

test('loss and return of the signal are told as they happen, to the tuner that is open', (t) => {
  const mux = JSON.stringify(multiplex('mux.ts'));
  const source = `
    const first = select(${mux}, '', () => first.closeTuner(), () => {
      say('{"first":"closed"}');
      setTimeout(() => select(${mux}, ''), 0);
    });`;
  return start(t, source).then((application) =>
    untilReports(application, 2)
      .then(() => application.ask('tuner'))
      .then((answer) => {
        t.equal(answer.tuner.state, 'locked');
        const services = answer.tuner.services.map((service) => [service.number, service.name]);
        t.equal(services.join(), '1,Televisão,2,Deux');
        return application.ask('signal', { lost: true });
      })
      .then(() => untilReports(application, 3))
      .then(() => application.ask('signal', { lost: false }))
      .then(() => untilReports(application, 4))
      .then((all) => {
        t.deepEqual(dataOf(all), ['1,', '1,', '0,Sem Sinal', '1,']);
        t.deepEqual(application.lines[1], '{"first":"closed"}');
      })
  );
});
