'use strict';

// Random calls of everything that the module exports.

const quiravent = require('../../script/support/module');
const recorder = require('../../script/support/recorder');
const { pick } = require('../../script/support/random');
const { hardEndOf } = require('./hard-ends');
const { Values, ThrownByValue } = require('./values');

/** How many objects of a class are kept; one more takes the place of another, which may then go. */
const KEPT = 20;

/** Each open worker takes a thread of the pool for as long as it is open, some for good. */
const MOST_WORKERS = 60;

const OPENING = ['mediaPlayer.registerListener', 'adPlayer.registerListener'];

/** Every function of the exports: { name, owner, method }; no method for a constructor itself. */
function everyFunction() {
  const list = [];
  Object.keys(quiravent).forEach((owner) => {
    const isClass = typeof quiravent[owner] === 'function';
    const holder = isClass ? quiravent[owner].prototype : quiravent[owner];
    if (isClass) list.push({ name: owner, owner });
    Object.keys(holder).forEach((method) =>
      list.push({ name: `${owner}.${method}`, owner, method, isClass })
    );
  });
  return list;
}

class Calls {
  constructor(next) {
    this.next = next;
    this.functions = everyFunction();
    this.natives = {};
    Object.keys(quiravent)
      .filter((name) => typeof quiravent[name] === 'function')
      .forEach((name) => (this.natives[name] = []));
    this.values = new Values(next, this.natives, () => this.one());
    this.state = { channel: false };
    this.channelAllowed = false;
    this.nested = 0;
    this.workers = {};
    this.made = {};
    this.avoided = {};
    this.thrown = {};
  }

  keep(object) {
    const name = Object.keys(this.natives).find(
      (each) => object instanceof quiravent[each] && object.constructor === quiravent[each]
    );
    const kept = this.natives[name];
    if (!kept) return;
    if (kept.length < KEPT) kept.push(object);
    else kept[this.next() % KEPT] = object;
  }

  isLive(value) {
    return Object.keys(this.natives).some((name) => this.natives[name].indexOf(value) >= 0);
  }

  /** Makes one call, possibly from within another. */
  one() {
    if (this.nested > 2) return undefined;
    this.nested += 1;
    try {
      const target = pick(this.next, this.functions);
      if (target.method) return this.callMethod(target);
      return this.construct(target);
    } finally {
      this.nested -= 1;
    }
  }

  args() {
    return Array.from({ length: this.next() % 8 }, () => this.values.any());
  }

  /** Arguments of the right kinds with one at random among them, so that deeper code is reached. */
  likelyArgs(name) {
    const keep = (error, result) => result && this.keep(result);
    const fitting = {
      'graphicServices.loadImage': () => [this.values.text(), keep],
      'graphicServices.loadFont': () => [this.values.text(), 1 + (this.next() % 300), keep],
      'mediaServices.getPlayer': () => [this.values.text(), this.values.record(), keep],
      'mediaServices.getAdPlayer': () => [this.values.text(), {}, keep],
      'tunerServices.getPlayer': () => [1, 2, this.values.number()],
      'dataServices.getPersistent': () => [this.values.text()],
      'persistent.set': () => [this.values.text(), this.values.any()],
      'persistent.get': () => [this.values.text()],
      'canvas.setFont': () => [pick(this.next, this.natives.font)],
      'canvas.setColor': () => [this.values.text()]
    }[name];
    const args = fitting ? fitting() : this.args();
    if (fitting && this.next() % 4 === 0) args[this.next() % args.length] = this.values.any();
    return args;
  }

  callMethod(target) {
    const holder = target.isClass ? quiravent[target.owner].prototype : quiravent[target.owner];
    const receiver = this.receiverFor(target);
    if (receiver === null) return;
    this.perform({ name: target.name, args: this.likelyArgs(target.name) }, (args) =>
      holder[target.method].apply(receiver, args)
    );
  }

  /** An object with a native side, or sometimes any value; null: there is none. */
  receiverFor(target) {
    if (this.next() % 16 === 0) return this.values.any();
    if (!target.isClass) return quiravent[target.owner];
    const kept = this.natives[target.owner];
    return kept.length ? pick(this.next, kept) : null;
  }

  /** With or without new; an object without a native side comes of it, or a worker. */
  construct(target) {
    const make = quiravent[target.owner];
    this.perform({ name: target.name, args: this.args() }, (args) => {
      const made =
        this.next() % 2
          ? make.apply(null, args)
          : new (make.bind.apply(make, [null].concat(args)))();
      if (this.isWorker(target.name)) this.keep(made);
    });
  }

  isWorker(name) {
    return name === 'InputWorker' || name === 'TunerWorker';
  }

  perform(call, run) {
    if (!this.admits(call)) return;
    this.made[call.name] = (this.made[call.name] || 0) + 1;
    try {
      const result = run(call.args);
      if (result !== null && typeof result === 'object') this.keep(result);
    } catch (error) {
      this.noteThrown(error);
    }
  }

  admits(call) {
    const end = hardEndOf(call, (value) => this.isLive(value), this.state);
    if (end) this.avoided[end.name] = (this.avoided[end.name] || 0) + 1;
    if (end || !this.mayOpen(call.name)) return false;
    if (call.name === 'platformServices.initProperties') {
      if (!this.channelAllowed) return false;
      this.state.channel = true;
    }
    return true;
  }

  mayOpen(name) {
    if (!this.isWorker(name) && OPENING.indexOf(name) < 0) return true;
    this.workers[name] = (this.workers[name] || 0) + 1;
    return this.workers[name] <= MOST_WORKERS;
  }

  noteThrown(error) {
    const kind =
      error instanceof ThrownByValue
        ? 'by a value'
        : error && error.constructor && error.constructor.name;
    this.thrown[kind] = (this.thrown[kind] || 0) + 1;
  }

  /** Prepares an answer of the device that no device should give. */
  prepareAnswer() {
    const fn = pick(this.next, recorder.functions);
    const handle = this.next() % 2 ? 0 : this.next();
    recorder.once(fn, {
      status: pick(this.next, [0, 1, -1, 0xffff]),
      outputs: this.next() % 2 ? { handle } : {}
    });
  }
}

module.exports = { Calls };
