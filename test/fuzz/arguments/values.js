'use strict';

// Script values of every kind, at random.

const { pick } = require('../../script/support/random');

/** What values throw themselves, to be told apart from what the module throws. */
class ThrownByValue extends Error {}

function fail() {
  throw new ThrownByValue('thrown by a value');
}

const NUMBERS = [NaN, Infinity, -Infinity].concat([
  0, -0, 1, -1, 0.5, -1.5, 255, 256, 65535, 65536, 1280, 2147483647, 2147483648, -2147483648,
  4294967295, 4294967296, 9007199254740992, 1e308, 5e-324
]);

const WORDS = `a red ReD #fff #12345678 #zzzzzz #zzz #é center middle SrcOver src_over fill null
  undefined running overlay video 12 1e3 -0 😀 __proto__ %s%n%x $(id) ../../../../etc/passwd
  http://host.invalid/x`;
const TEXTS = ['', '#-1+f 7', '\0a', 'a\0b', '\ud800', 'x'.repeat(70000)].concat(
  WORDS.split(/\s+/)
);

const RECTANGLE = ['x', 'y', 'w', 'h'];
const NAMES = RECTANGLE.concat(
  ['r', 'g', 'b', 'a', 'x1', 'y1', 'x2', 'y2', 'mode', 'xc', 'yc', 'radiusx', 'radiusy'],
  ['ang_start', 'ang_end', 'toString', 'valueOf', 'length']
);

/**
 * natives: the live objects of the module by class, which grow and shrink; reenter: makes another
 * call, as a script does from within an accessor.
 */
class Values {
  constructor(next, natives, reenter) {
    this.next = next;
    this.natives = natives;
    this.reenter = reenter;
    this.depth = 0;
    this.kinds = this.simpleKinds().concat(
      this.objectKinds(),
      this.builtInKinds(),
      this.nativeKinds()
    );
  }

  any() {
    if (this.depth > 2) return this.next();
    this.depth += 1;
    try {
      return pick(this.next, this.kinds)();
    } finally {
      this.depth -= 1;
    }
  }

  text() {
    if (this.next() % 3) return pick(this.next, TEXTS);
    const codes = Array.from({ length: this.next() % 12 }, () => this.next() % 0x250);
    return String.fromCharCode.apply(null, this.next() % 4 ? codes : [35].concat(codes));
  }

  number() {
    return this.next() % 2 ? pick(this.next, NUMBERS) : this.next() % 2000;
  }

  /** An object with some of the properties that methods read. */
  record() {
    const names = this.next() % 2 ? RECTANGLE : NAMES.filter(() => this.next() % 2);
    const record = {};
    names.forEach((name) => (record[name] = this.any()));
    return record;
  }

  /** An object one of whose accessors does something. */
  withAccessor(get) {
    return Object.defineProperty(this.record(), pick(this.next, NAMES), {
      get,
      configurable: true
    });
  }

  simpleKinds() {
    const kinds = [
      () => undefined,
      () => null,
      () => true,
      () => false,
      () => this.number(),
      () => this.number(),
      () => this.text(),
      () => this.text(),
      () => Symbol('symbol'),
      () => Symbol.iterator
    ];
    // Not every runtime has them.
    if (typeof global.BigInt === 'function') kinds.push(() => global.BigInt(this.next()));
    return kinds;
  }

  objectKinds() {
    return [
      () => ({}),
      () => Object.create(null),
      () => this.record(),
      () => this.record(),
      () => Object.freeze(this.record()),
      () => this.withAccessor(fail),
      () => this.withAccessor(() => this.reenter()),
      () => ({ toString: fail, valueOf: fail }),
      () => ({ toString: () => ({}), valueOf: () => ({}) }),
      () => ({ valueOf: () => this.next(), toString: () => 'text' }),
      () => new Proxy(this.record(), {}),
      () => new Proxy({}, { get: fail, has: fail, getPrototypeOf: fail }),
      () => new Proxy(() => {}, { apply: fail }),
      () => Array.from({ length: this.next() % 5 }, () => this.any()),
      () => new Array(5),
      () => () => this.reenter(),
      () => fail,
      () => class {},
      () => function* generatorFunction() {},
      () => Object.bind,
      () => fail.bind(null)
    ];
  }

  builtInKinds() {
    return [
      () => new Date(0),
      () => new Date(NaN),
      () => /expression/g,
      () => new Map(),
      () => new WeakMap(),
      () => Promise.resolve(1),
      () => new Error('error'),
      () => new ArrayBuffer(8),
      () => new Uint8Array(4),
      () => new Float64Array(2),
      () => new DataView(new ArrayBuffer(8)),
      () => Buffer.from('bytes'),
      () => new Number(this.number()),
      () => new String(this.text()),
      () => new Boolean(false),
      () => Object(Symbol('boxed')),
      () => Math,
      () => global,
      (function () {
        return () => arguments;
      })(1, 2)
    ];
  }

  nativeKinds() {
    const classes = Object.keys(this.natives);
    const native = () => {
      const objects = this.natives[pick(this.next, classes)];
      return objects.length ? pick(this.next, objects) : null;
    };
    // Often, since most methods do more with them than with anything else.
    return [native, native, native, native, native, () => Object.create(native())];
  }
}

module.exports = { Values, ThrownByValue };
