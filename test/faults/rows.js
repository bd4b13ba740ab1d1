'use strict';

// For each function of the porting layer: what makes a script's call reach it, and what the script
// sees when it succeeds, when it fails, and when it gives a handle of 0.

const quiravent = require('../script/support/module');
const recorder = require('../script/support/recorder');
const { fireUntil } = require('../script/support/events');
const { quiet } = require('../script/support/threads');
const { keep, loadUnkept } = require('../script/support/graphics');
const { collect } = require('../script/support/collection');
const workers = require('../script/support/workers');

const { graphicServices, dataServices, tunerServices, platformServices: services } = quiravent;

/** Objects over a device without faults, made once: those that most rows call a method of. */
const subjects = {};

function makePlayer(kind) {
  return new Promise((resolve) => {
    const callback = (error, result) => resolve({ error, result });
    quiravent.mediaServices[workers.PLAYERS[kind].make]('url', {}, callback);
  });
}

function prepare() {
  subjects.canvas = keep(graphicServices.createCanvas(8, 6));
  subjects.source = keep(graphicServices.createCanvas(4, 4));
  subjects.live = keep(tunerServices.getPlayer(1, 2, 3));
  subjects.store = keep(dataServices.getPersistent('context'));
  subjects.store.set('key', 'value');
  return Promise.all([
    loadUnkept('loadFont', 'font', 9),
    makePlayer('media'),
    makePlayer('ad')
  ]).then((made) => {
    const [font, media, ad] = made.map((each) => keep(each.result));
    Object.assign(subjects, { font, media, ad });
    subjects.canvas.setFont(font);
  });
}

/** What a loading function called back with: the class of the result, or the text of the error. */
function outcomeOf(outcome) {
  return outcome.error ? outcome.error.message : keep(outcome.result).constructor.name;
}

const rect = { x: 1, y: 2, w: 3, h: 4 };
const noTime = { now: 0, begin: 0, end: 0 };
const noRange = { begin: 0, end: 0 };

/** Of an array that a device fails to fill: all the room, since the status isn't looked at, by design. */
const allRoom = (record) => Array.from({ length: 10 }, () => record);

/** A row: what the script sees, when the function fails, and when it gives a handle of 0, if it can. */
function script(call, seen, failed, zero) {
  return Object.assign({ call, seen, failed }, arguments.length > 3 && { zero });
}

/** A row of a function that is called on a pool thread. */
function pool() {
  return Object.assign(script.apply(null, arguments), { pool: true });
}

/** Rows of functions of which the script sees nothing, by method of a subject. */
function silent(subject, prefix, methods) {
  const rows = {};
  Object.keys(methods).forEach((method) => {
    const name = prefix + method[0].toUpperCase() + method.slice(1);
    rows[name] = script(() => subjects[subject][method].apply(subjects[subject], methods[method]));
  });
  return rows;
}

const canvases = Object.assign(
  silent('canvas', 'pl_gfx_Canvas_', {
    fillRect: [rect],
    clearRect: [rect],
    drawRect: [rect],
    drawLine: [1, 2, 3, 4],
    setRotation: [45],
    setOpacity: [0.5],
    drawText: ['text', 1, 2],
    flush: [],
    drawEllipse: ['fill', 1, 2, 3, 4, 5, 6],
    setPorterDuff: ['XOR']
  }),
  {
    pl_gfx_Canvas_Compose: script(() => subjects.canvas.compose(subjects.source, 1, 2)),
    pl_gfx_Canvas_ComposeScaled: script(() =>
      subjects.canvas.composeScaled(subjects.source, rect, rect)
    ),
    // Filtered, so that each time another value has to be set.
    pl_gfx_Canvas_SetColor: script((time) => subjects.canvas.setColor({ r: time, g: 1, b: 2 })),
    pl_gfx_Canvas_SetClip: script((time) => subjects.canvas.setClip(time, 2, 3, 4)),
    pl_gfx_Canvas_SetTextAlign: script((time) =>
      subjects.canvas.setTextAlign(['left', 'center', 'right'][time % 3], 'top')
    ),
    // The font isn't bound, so that there is nothing to measure with.
    pl_gfx_Canvas_SetFont: script(
      () => {
        const canvas = keep(graphicServices.createCanvas(2, 2));
        canvas.setFont(subjects.font);
        return canvas.measureText('ab');
      },
      { width: 20, height: 20 },
      { width: 0, height: 0 }
    ),
    pl_gfx_Canvas_MeasureText: script(
      () => subjects.canvas.measureText('ab'),
      { width: 20, height: 20 },
      { width: 0, height: 0 }
    ),
    pl_gfx_Canvas_GetSize: script(() => subjects.canvas.getSize(), { w: 8, h: 6 }, { w: 0, h: 0 }),
    pl_gfx_Canvas_GetColor: script(
      () => subjects.source.getColor(),
      { r: 255, g: 255, b: 255, a: 255 },
      { r: 0, g: 0, b: 0, a: 0 }
    ),
    pl_gfx_Canvas_GetClip: script(
      () => subjects.source.getClip(),
      { x: 0, y: 0, w: 4, h: 4 },
      { x: 0, y: 0, w: 0, h: 0 }
    )
  }
);

const graphics = {
  pl_gfx_CreateCanvas: script(
    () => {
      const canvas = keep(graphicServices.createCanvas(2, 2));
      return canvas && canvas.isInvalid();
    },
    false,
    undefined,
    true
  ),
  pl_gfx_ReleaseCanvas: script(
    () => {
      const canvas = graphicServices.createCanvas(2, 2);
      canvas.release();
      return canvas.isInvalid();
    },
    true,
    true
  ),
  pl_gfx_LoadImage: pool(
    () => loadUnkept('loadImage', 'path').then(outcomeOf),
    'canvas',
    'Error on loading image',
    'Error on loading image'
  ),
  pl_gfx_LoadFont: pool(
    () => loadUnkept('loadFont', 'path', 9).then(outcomeOf),
    'font',
    'Error on loading font',
    'font'
  ),
  // By the collector alone.
  pl_gfx_ReleaseFont: script(
    (time, reached) =>
      loadUnkept('loadFont', 'path', 9)
        .then(() => undefined)
        .then(() => collect(reached)),
    true,
    true
  ),
  pl_gfx_GetVRAMStats: script(() => graphicServices.getVRAMStats().used >= 0, true, true)
};

function players(kind, prefix) {
  const names = workers.PLAYERS[kind];
  const isMedia = kind === 'media';
  const refused = isMedia ? 'Error on getPlayer' : 'ERROR';
  return {
    [names.create]: pool(
      () => makePlayer(kind).then(outcomeOf),
      isMedia ? 'mediaPlayer' : 'adPlayer',
      refused,
      refused
    ),
    // The worker waits for good where the device has no callback to call.
    [names.register]: pool(
      () =>
        workers
          .newPlayer(kind)
          .then((made) => workers.follow(kind, made))
          .then((follower) => workers.endAll([follower]))
          .then(() => 'ended'),
      'ended',
      'ended'
    ),
    [`${prefix}GetTime`]: script(() => subjects[kind].getTime(), noTime, noTime),
    [`${prefix}GetBufferedTimes`]: script(
      () => subjects[kind].getBufferedTimes(),
      isMedia ? [] : undefined,
      isMedia ? allRoom(noRange) : noRange
    )
  };
}

const media = Object.assign(
  players('media', 'pl_media_UrlPlayer_'),
  players('ad', 'pl_media_AdPlayer_'),
  silent('media', 'pl_media_UrlPlayer_', {
    fetch: [],
    start: [],
    pause: [],
    resume: [],
    stop: [],
    setBounds: [rect],
    seek: [5],
    setVolume: [1],
    selectTrack: ['audio', 1],
    unload: []
  }),
  silent('ad', 'pl_media_AdPlayer_', {
    start: [],
    pause: [],
    resume: [],
    stop: [],
    setVolume: [1],
    unload: []
  }),
  {
    pl_media_UrlPlayer_SetPlaybackSpeed: script(() => subjects.media.setPlaybackSpeed(2), 2, 2),
    pl_media_UrlPlayer_GetTracks: script(
      () => subjects.media.getTracks('audio'),
      undefined,
      allRoom({ id: 0, language: '' })
    )
  }
);

const stores = {
  pl_persistent_GetPersistent: script(
    () => dataServices.getPersistent('another') instanceof quiravent.persistent,
    true,
    false,
    false
  ),
  pl_persistent_GetValue: script(() => subjects.store.get('key'), 'value', undefined),
  pl_persistent_SetValue: script(() => subjects.store.set('key', 'value')),
  pl_persistent_GetAllValues: script(() => subjects.store.getAll(), { key: 'value' }, {})
};

const openAndEndTuner = () =>
  workers.endAll([workers.openTuner('selector', 'option')]).then(() => 'ended');

const television = Object.assign(
  silent('live', 'pl_dtv_Player_', {
    start: [],
    stop: [],
    setBounds: [rect],
    setVolume: [0.5],
    toggleClosedCaption: [true]
  }),
  {
    pl_dtv_Action_getPlayer: script(
      () => tunerServices.getPlayer(1, 2, 3) instanceof quiravent.dtvplayer,
      true,
      false,
      false
    ),
    pl_dtv_Action_releasePlayer: script(() => tunerServices.getPlayer(1, 2, 3).release()),
    pl_dtv_Action_selectTransportStream: pool(openAndEndTuner, 'ended', 'ended'),
    pl_dtv_Action_unselectTransportStream: pool(openAndEndTuner, 'ended', 'ended')
  }
);

/** Opens an input worker and ends it, which takes an event of a kind that the device tells. */
function openAndEndInput(kind) {
  const input = workers.openInput();
  return quiet()
    .then(() => input.close())
    .then(() => fireUntil(recorder.event(kind, 5), () => input.isComplete()))
    .then(() => 'ended');
}

const platform = {
  pl_input_SetCallback_KeyPress: pool(() => openAndEndInput('keyRelease'), 'ended', 'ended'),
  pl_input_SetCallback_KeyRelease: pool(() => openAndEndInput('keyPress'), 'ended', 'ended'),
  pl_platform_GetRuntimeState: script(() => services.getRuntimeState(), 'running', 'unknown'),
  pl_platform_SetRuntimeState: script(() => services.setRuntimeState('running'), true, true),
  pl_platform_Exit: script(() => services.exit()),
  pl_platform_Restart: script(() => services.restart(), true, false),
  pl_platform_ToggleLiveDTV: script(() => services.toggleLiveDTV(false)),
  pl_platform_GetLiveDTVStatus: script(() => services.getLiveDTVStatus(), false, false),
  pl_platform_SetReferenceDate: script(() => services.setReferenceDate(5))
};

// From here on the channel is there, which "exit" would wait for. Fetched anew while there are none.
const properties = {
  pl_platform_InitProperties: script(() => services.initProperties(), {}, {}),
  pl_platform_SetCallback_RuntimeStateChange: script(() => services.initProperties(), {}, {})
};

/** No script reaches them: the load of the module does, or nothing. */
const UNREACHED = {
  pl_input_init: 'called when the module is loaded, see faults.test.js',
  pl_gfx_GetTargetCanvas: 'made once in a process, see faults.test.js',
  pl_input_UpdateKeyMask: 'called by nothing in the module',
  pl_media_UrlPlayer_GetThumbnail: 'the script method does nothing',
  pl_dtv_Demux_closeFilter: 'scripts have no filters',
  'PlatformServices::EnableDTVEvents': 'no porting-layer function of a status'
};

const rows = Object.assign({}, canvases, graphics, media, stores, television, platform, properties);

module.exports = { rows, prepare, UNREACHED };
