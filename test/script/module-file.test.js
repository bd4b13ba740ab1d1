'use strict';

const fs = require('fs');
const os = require('os');
const path = require('path');
const test = require('tape');
const { check } = require('../../tools/check-module');
const { mustRun } = require('../../tools/lib/run');
const { buildFolder, modulePath } = require('./support/build');

const abi = Number(process.versions.modules);

const faultsOf = (file, version) => {
  try {
    check(file, buildFolder, version, process.execPath);
  } catch (error) {
    return error.message;
  }
  return '';
};

test('the module says to the loader and to the runtime what it should', (t) => {
  t.equal(faultsOf(modulePath, abi), '');
  t.end();
});

/** [offset, size] of a section in the file. */
function sectionOf(name) {
  const lines = mustRun('readelf', ['-S', '-W', modulePath], { capture: true }).stdout.split('\n');
  const words = lines.find((line) => line.indexOf(` ${name} `) > 0).split(/\s+/);
  const from = words.indexOf(name);
  return [parseInt(words[from + 3], 16), parseInt(words[from + 4], 16)];
}

/** Writes another text of the same length in place of each that a NUL ends. */
function renamed(text, other) {
  return (bytes) => {
    let at = bytes.indexOf(`${text}\0`);
    if (at < 0) throw new Error(`${text} is not in ${modulePath}`);
    for (; at >= 0; at = bytes.indexOf(`${text}\0`, at)) bytes.write(other, at);
  };
}

/** Writes a word into the record that is registered, found by how it begins: version, 0, null. */
function recordWith(index, value) {
  return (bytes) => {
    const start = Buffer.alloc(12);
    start.writeUInt32LE(abi, 0);
    const section = sectionOf('.data');
    bytes.writeUInt32LE(value, bytes.indexOf(start, section[0]) + 4 * index);
  };
}

/** Asks the loader to bind all at once: DT_FLAGS with DF_BIND_NOW, in place of the first end mark. */
function boundAtOnce(bytes) {
  const word = bytes[4] === 2 ? 8 : 4;
  const section = sectionOf('.dynamic');
  let at = section[0];
  while (bytes.readUInt32LE(at) !== 0) at += 2 * word;
  bytes.writeUInt32LE(30, at);
  bytes.writeUInt32LE(8, at + word);
}

// [change to the file, what the check then says]
const FAULTS = [
  [renamed('quiravent.node', 'quiravent.nods'), /^soname: /m],
  [renamed('$ORIGIN', '$ORIGAN'), /^run path: /m],
  [
    renamed('libquiravent_porting_layer.so', 'libquiravent_porting_lawyer.s'),
    /^the porting layer /m
  ],
  [renamed('libstdc++.so.6', 'libstdcxx.so.6'), /^else: \["libstdcxx.so.6"\]/m],
  [renamed('g_input_worker', 'g_input_walker'), /^what it shows: /m],
  [
    renamed('_ZN16PlatformServices15EnableDTVEventsEv', '_ZN16PlatformServices15EnableDTVElementE'),
    /^EnableDTVEvents .*: \[\]/m
  ],
  [boundAtOnce, /^binding all at once: true/m],
  [renamed('pl_gfx_ReleaseFont', 'pl_gfx_ReleaseFond'), /^functions of the porting layer: .*Fond/m],
  [renamed('uv_async_send', 'uv_async_sent'), /^functions that the runtime lacks: .*sent/m],
  [recordWith(0, abi + 1), new RegExp(`^module record: {"version":${abi + 1},`, 'm')],
  [recordWith(1, 2), /^module record: .*"flags":2,/m],
  [renamed('../src/Quiravent', '../src/Quiraven_'), /^module record: .*Quiraven_"/m]
];

test('the check tells what is wrong with a module', (t) => {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quiravent-module-'));
  t.teardown(() => mustRun('rm', ['-rf', folder]));
  const file = path.join(folder, 'quiravent.node');
  FAULTS.forEach((fault) => {
    const bytes = fs.readFileSync(modulePath);
    fault[0](bytes);
    fs.writeFileSync(file, bytes);
    const said = faultsOf(file, abi);
    t.ok(fault[1].test(said), said || 'nothing');
  });
  t.end();
});
