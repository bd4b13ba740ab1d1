'use strict';

/** What a background job gives to its callback, as a promise. start(callback): begins the job */
function promised(start) {
  return new Promise((resolve, reject) =>
    start((error, result) => (error ? reject(new Error(error.message)) : resolve(result)))
  );
}

module.exports = { promised };
