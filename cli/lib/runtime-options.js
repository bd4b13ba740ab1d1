'use strict';

// Options of the script runtime, which the launcher hands on. Which of them take the next word as
// their value only the runtime itself knows, and it differs between versions; so it is asked.

const { spawnSync } = require('child_process');
const { UsageError } = require('./failures');

/** What the runtime makes of an option that another option follows. */
function ask(option) {
  const answer = spawnSync(process.execPath, [option, '--version'], {
    encoding: 'utf8',
    stdio: ['ignore', 'pipe', 'pipe']
  });
  // Some versions complain that a value is missing, others have taken '--version' for it.
  const wantsValue = /requires an argument|--version/.test(answer.stderr) || answer.status === 1;
  return { isGood: answer.status === 0, wantsValue, text: answer.stderr.trim().split('\n')[0] };
}

/**
 * The words of a runtime option: itself and, taken from rest, its value if it has one. Null for what
 * the runtime doesn't know. Throws UsageError for a value that it doesn't take, or a missing one.
 */
function takeRuntimeOption(option, rest) {
  const answer = ask(option);
  if (answer.isGood) return [option];
  if (/bad option/.test(answer.text)) return null;
  if (answer.wantsValue && rest.length > 0) return [option, rest.shift()];
  const reason = answer.wantsValue ? 'it needs a value' : answer.text;
  throw new UsageError(`run: the runtime doesn't accept '${option}': ${reason}`);
}

module.exports = { takeRuntimeOption };
