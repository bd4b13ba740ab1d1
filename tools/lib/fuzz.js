'use strict';

// Runs the fuzz targets: programs of libFuzzer, each over one input of the device or the module, and
// the calls of everything that scripts can call.

const fs = require('fs');
const path = require('path');
const { build, configure } = require('./build');
const { countsOf, numberIn, sum } = require('./counts');
const { SUITE_PATIENCE_MS, mustRun, root, run } = require('./run');
const { concurrently } = require('../../test/lib/concurrently');
const { runProgram } = require('../../test/lib/program');

const source = path.join(root, 'test', 'fuzz');
const programs = path.join(root, 'build', 'asan', 'fuzz');
const output = path.join(root, 'build', 'fuzz');

/** The longest inputs that are tried, in bytes, by target. */
const LONGEST = {
  channel: 4096,
  configuration: 8192,
  control: 70000,
  fonts: 400000,
  images: 20000,
  stream: 4096,
  texts: 2000,
  vocabulary: 200
};

/** Fonts to begin with are the smallest that the tests' own package has. */
const FONT_SEED = '/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf';

/** What can be fuzzed. */
const targets = Object.keys(LONGEST).concat('arguments');

const countOf = (results) => {
  const passed = results.filter(Boolean).length;
  return { passed, failed: results.length - passed };
};

function folder(kind, target) {
  const place = path.join(output, kind, target);
  fs.mkdirSync(place, { recursive: true });
  return place;
}

/** A second of a service with picture and sound. */
function makeStream(file) {
  const inputs = ['testsrc2=s=160x90:r=25:d=1', 'sine=440:d=1'];
  const words = ['-nostdin', '-loglevel', 'error', '-y'].concat(
    ...inputs.map((input) => ['-f', 'lavfi', '-i', input])
  );
  const output = ['-c:v', 'mpeg2video', '-b:v', '60k', '-c:a', 'mp2', '-f', 'mpegts', file];
  mustRun('ffmpeg', words.concat(output));
}

function writeSeeds() {
  makeStream(path.join(folder('seeds', 'stream'), 'stream'));
  mustRun(path.join(programs, 'fuzz_image_seeds'), [folder('seeds', 'images')]);
  fs.copyFileSync(FONT_SEED, path.join(folder('seeds', 'fonts'), 'font'));
}

function wordsFor(target, options) {
  const words = [
    `-max_total_time=${options.seconds}`,
    `-max_len=${LONGEST[target]}`,
    `-seed=${options.seed}`,
    `-artifact_prefix=${folder('finds', target)}/`,
    '-timeout=20',
    '-rss_limit_mb=3000',
    '-print_final_stats=1'
  ];
  const dictionary = path.join(source, 'dictionaries', `${target}.dict`);
  if (fs.existsSync(dictionary)) words.push(`-dict=${dictionary}`);
  // The first folder takes what is found to be of interest.
  const folders = [folder('corpus', target), folder('seeds', target)];
  const kept = path.join(source, 'seeds', target);
  return words.concat(folders, fs.existsSync(kept) ? kept : []);
}

/** Tells how one ended, at once, though others run beside it. */
function tell(target, passed, result, finding) {
  console.error(`${passed ? 'ok    ' : 'FAILED'} ${target}: ${result}`);
  if (!passed) console.error(finding.slice(-10000));
}

/** Runs one program for the time given; resolves with whether nothing was found. */
function fuzzProgram(target, options) {
  const patienceMs = options.seconds * 1000 + SUITE_PATIENCE_MS;
  const program = path.join(programs, `fuzz_${target}`);
  return runProgram(program, wordsFor(target, options), { env: process.env, patienceMs }).then(
    (ended) => {
      const runs = numberIn(ended.errors, /number_of_executed_units: (\d+)/);
      const passed = ended.code === 0 && runs > 0;
      tell(target, passed, `${runs} inputs`, ended.output + ended.errors + (ended.hanging || ''));
      return passed;
    }
  );
}

/** Runs programs, two at a time; resolves with { passed, failed }. */
function fuzzPrograms(names, options) {
  const results = [];
  const fuzzOne = (name) => fuzzProgram(name, options).then((passed) => results.push(passed));
  return concurrently(names, 2, fuzzOne).then(() => countOf(results));
}

/** Calls of scripts over the recorder, in a build of the preset. */
function fuzzArguments(options) {
  const program = path.join(source, 'arguments', 'run.js');
  const result = run(
    process.execPath,
    ['--expose-gc', program, String(options.calls), String(options.seed)],
    {
      env: Object.assign({}, process.env, {
        LD_LIBRARY_PATH: path.join(root, 'build', 'release', 'recorder')
      }),
      capture: true,
      timeout: SUITE_PATIENCE_MS
    }
  );
  const lines = result.stdout.trim().split('\n');
  const passed = result.status === 0;
  tell('arguments', passed, lines[lines.length - 1], result.stderr);
  return passed;
}

const isProgram = (name) => name !== 'arguments';

/** Builds the programs with the tests' libraries. */
function buildPrograms() {
  const cache = path.join(configure('asan'), 'CMakeCache.txt');
  // libFuzzer may have been installed since.
  if (fs.readFileSync(cache, 'utf8').includes('LIBFUZZER-NOTFOUND'))
    build('asan', ['rebuild_cache']);
  build('asan', ['fuzz']);
}

/** Builds what the targets named need. */
function buildTargets(names) {
  if (names.some(isProgram)) buildPrograms();
  if (!names.every(isProgram)) build('release', ['script_tests']);
}

/**
 * Fuzzes the targets named, which must be built.
 * @param options seconds for each program, calls of scripts, seed
 * @returns {{passed: number, failed: number}} counts of targets
 */
function fuzz(names, options) {
  const native = names.filter(isProgram);
  if (native.length > 0) writeSeeds();
  console.log(`seed ${options.seed}`);
  const words = ['tools/fuzz-programs.js', options.seconds, options.seed]
    .map(String)
    .concat(native);
  const streams = { stdio: ['ignore', 'pipe', 'inherit'] };
  const counts = native.length > 0 ? [countsOf(run(process.execPath, words, streams))] : [];
  if (!names.every(isProgram)) counts.push(countOf([fuzzArguments(options)]));
  return sum(counts);
}

module.exports = { buildTargets, fuzz, fuzzPrograms, isProgram, targets };
