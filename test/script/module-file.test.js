'use strict';

const test = require('tape');
const { check } = require('../../tools/check-module');
const { modulePath } = require('./support/build');

test('the module says to the loader what it is, what it needs and what it shows', (t) => {
  t.doesNotThrow(() => check([modulePath]));
  t.end();
});
