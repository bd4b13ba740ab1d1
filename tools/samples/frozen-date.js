'use strict';

// Loaded before an example: it is always 20:47 on the same evening, so that two runs show the same.

const RealDate = Date;
const evening = RealDate.UTC(2025, 10, 21, 20, 47);

global.Date = class extends RealDate {
  constructor() {
    super(...(arguments.length > 0 ? arguments : [evening]));
  }

  static now() {
    return evening;
  }
};
