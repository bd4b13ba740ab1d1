'use strict';

/** What the user is told in one line, without a stack. */
class Failure extends Error {
  constructor(message) {
    super(message);
    this.status = 1;
  }
}

/** The command line itself is wrong. */
class UsageError extends Failure {
  constructor(message) {
    super(message);
    this.status = 2;
  }
}

/** The device answered a request with an error. */
class Refusal extends Failure {}

/** The device closed the connection, or its process ended. */
class ConnectionLost extends Failure {}

module.exports = { Failure, UsageError, Refusal, ConnectionLost };
