'use strict';

const test = require('tape');
const recorder = require('./support/recorder');
const quiravent = require('./support/module');

const callsAtLoad = recorder.calls();

// In the order in which they are set; `members` are a namespace's, `methods` a class's.
const EXPORTS = [
  {
    name: 'graphicServices',
    members: 'getTargetCanvas createCanvas loadImage loadFont getVRAMStats cleanUp'
  },
  { name: 'mediaServices', members: 'getPlayer getAdPlayer' },
  {
    name: 'mediaPlayer',
    methods:
      'fetch start pause resume stop unload setBounds seek getTime setPlaybackSpeed ' +
      'setVolume getThumbnail getBufferedTimes registerListener selectTrack getTracks'
  },
  {
    name: 'adPlayer',
    methods: 'start pause resume stop unload getTime setVolume getBufferedTimes registerListener'
  },
  { name: 'font', methods: '' },
  {
    name: 'canvas',
    methods:
      'getSize setColor getColor fillRect clearRect drawRect drawLine setClip getClip ' +
      'setRotation setOpacity setFont drawText measureText setTextAlign compose ' +
      'composeScaled flush drawEllipse setPorterDuff release isInvalid'
  },
  { name: 'InputWorker', methods: 'closeInput' },
  { name: 'dataServices', members: 'getPersistent' },
  { name: 'persistent', methods: 'get set getAll' },
  {
    name: 'platformServices',
    members:
      'initProperties exit getRuntimeState setRuntimeState toggleLiveDTV ' +
      'getLiveDTVStatus setReferenceDate restart enableDTVEvents'
  },
  { name: 'TunerWorker', methods: 'closeTuner' },
  {
    name: 'tunerServices',
    members: 'getAllTransportStreams getTableInfo unselectTransportStream getPlayer openDemuxFilter'
  },
  { name: 'dtvplayer', methods: 'start stop setBounds setVolume toggleClosedCaption release' }
].map((entry) => {
  const words = (text) => (text === undefined ? null : text.split(' ').filter(Boolean));
  return { name: entry.name, members: words(entry.members), methods: words(entry.methods) };
});

const namespaces = EXPORTS.filter((entry) => entry.members);
const classes = EXPORTS.filter((entry) => entry.methods);

function isPlain(object, name) {
  const property = Object.getOwnPropertyDescriptor(object, name);
  return Boolean(property.writable && property.enumerable && property.configurable);
}

test('the exports are the known names in their order, as plain properties', (t) => {
  const names = EXPORTS.map((entry) => entry.name);
  t.deepEqual(Object.getOwnPropertyNames(quiravent), names);
  names.forEach((name) => t.ok(isPlain(quiravent, name), name));
  t.end();
});

test('a namespace is a plain object that holds its functions in order', (t) => {
  namespaces.forEach((entry) => {
    const space = quiravent[entry.name];
    t.equal(Object.getPrototypeOf(space), Object.prototype, entry.name);
    t.deepEqual(Object.getOwnPropertyNames(space), entry.members, entry.name);
    entry.members.forEach((name) => {
      t.equal(typeof space[name], 'function', name);
      t.ok(isPlain(space, name), name);
    });
  });
  t.end();
});

test('a class has its name, and its methods in order on the prototype', (t) => {
  classes.forEach((entry) => {
    const constructor = quiravent[entry.name];
    t.equal(typeof constructor, 'function', entry.name);
    t.equal(constructor.name, entry.name);
    t.equal(Object.getPrototypeOf(constructor.prototype), Object.prototype, 'and no other methods');
    const own = Object.getOwnPropertyNames(constructor.prototype);
    t.deepEqual(
      own.filter((name) => name !== 'constructor'),
      entry.methods,
      entry.name
    );
    entry.methods.forEach((name) => {
      const method = constructor.prototype[name];
      t.equal(method.name, name);
      t.ok(isPlain(constructor.prototype, name), name);
    });
  });
  t.end();
});

test('loading reaches the porting layer with nothing but the readying of keys', (t) => {
  t.deepEqual(
    callsAtLoad.map((call) => [call.fn, call.args, call.thread]),
    [['pl_input_init', [], 'script']]
  );
  t.end();
});
