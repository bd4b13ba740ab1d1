'use strict';

// For each function of the porting layer: what makes a script's call reach it, and what the script
// sees when it succeeds, when it fails, and when it gives a handle of 0.

const quiravent = require('../script/support/module');
const recorder = require('../script/support/recorder');
const { fireUntil } = require('../script/support/events');
const { quiet } = require('../script/support/threads');
const { keep } = require('../script/support/graphics');
const { collect } = require('../script/support/collection');
const workers = require('../script/support/workers');

const { graphicServices, dataServices, tunerServices, platformServices } = quiravent;

/** Objects over a device without faults, made once: those that most rows call a method of. */
const subjects = {};

function load(name, args) {
  return new Promise((resolve) => {
    const callback = (error, result) => resolve({ error, result });
    graphicServices[name].apply(null, args.concat(callback));
  });
}

function makePlayer(kind) {
  return new Promise((resolve) => {
    const callback = (error, result) => resolve({ error, result });
    quiravent.mediaServices[workers.PLAYERS[kind].make]('url', {}, callback);
  });
}

/** Resolves when the subjects are there. */
function prepare() {
  subjects.canvas = keep(graphicServices.createCanvas(8, 6));
  subjects.source = keep(graphicServices.createCanvas(4, 4));
  subjects.live = keep(tunerServices.getPlayer(1, 2, 3));
  subjects.store = keep(dataServices.getPersistent('context'));
  subjects.store.set('key', 'value');
  return Promise.all([load('loadFont', ['font', 9]), makePlayer('media'), makePlayer('ad')]).then(
    (made) => {
      const [font, media, ad] = made.map((each) => keep(each.result));
      Object.assign(subjects, { font, media, ad });
      subjects.canvas.setFont(font);
    }
  );
}

/** What a loading function called back with: the class of the result, or the text of the error. */
function outcomeOf(outcome) {
  return outcome.error ? outcome.error.message : keep(outcome.result).constructor.name;
}

const rect = { x: 1, y: 2, w: 3, h: 4 };
const noRect = { x: 0, y: 0, w: 0, h: 0 };
const noTime = { now: 0, begin: 0, end: 0 };
const noRange = { begin: 0, end: 0 };

/** Of an array that a device fails to fill: all the room, since the status isn't looked at, by design. */
const allRoom = (record) => Array.from({ length: 10 }, () => record);

/** Rows of functions of which the script sees nothing, by method of a subject. */
function silent(subject, prefix, methods) {
  const rows = {};
  Object.keys(methods).forEach((method) => {
    const name = prefix + method[0].toUpperCase() + method.slice(1);
    rows[name] = {
      call: () => subjects[subject][method].apply(subjects[subject], methods[method])
    };
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
    pl_gfx_Canvas_Compose: { call: () => subjects.canvas.compose(subjects.source, 1, 2) },
    pl_gfx_Canvas_ComposeScaled: {
      call: () => subjects.canvas.composeScaled(subjects.source, rect, rect)
    },
    // Filtered, so that each time another value has to be set.
    pl_gfx_Canvas_SetColor: {
      call: (time) => subjects.canvas.setColor({ r: time, g: 1, b: 2, a: 255 })
    },
    pl_gfx_Canvas_SetClip: { call: (time) => subjects.canvas.setClip(time, 2, 3, 4) },
    pl_gfx_Canvas_SetTextAlign: {
      call: (time) => subjects.canvas.setTextAlign(['left', 'center', 'right'][time % 3], 'top')
    },
    pl_gfx_Canvas_SetFont: {
      call: () => {
        const canvas = keep(graphicServices.createCanvas(2, 2));
        canvas.setFont(subjects.font);
        return canvas.measureText('ab');
      },
      seen: { width: 20, height: 20 },
      // The font isn't bound, so that there is nothing to measure with.
      failed: { width: 0, height: 0 }
    },
    pl_gfx_Canvas_MeasureText: {
      call: () => subjects.canvas.measureText('ab'),
      seen: { width: 20, height: 20 },
      failed: { width: 0, height: 0 }
    },
    pl_gfx_Canvas_GetSize: {
      call: () => subjects.canvas.getSize(),
      seen: { w: 8, h: 6 },
      failed: { w: 0, h: 0 }
    },
    pl_gfx_Canvas_GetColor: {
      call: () => subjects.source.getColor(),
      seen: { r: 255, g: 255, b: 255, a: 255 },
      failed: { r: 0, g: 0, b: 0, a: 0 }
    },
    pl_gfx_Canvas_GetClip: {
      call: () => subjects.source.getClip(),
      seen: { x: 0, y: 0, w: 4, h: 4 },
      failed: noRect
    }
  }
);

const graphics = {
  pl_gfx_CreateCanvas: {
    call: () => {
      const canvas = keep(graphicServices.createCanvas(2, 2));
      return canvas && canvas.isInvalid();
    },
    seen: false,
    failed: undefined,
    zero: true
  },
  pl_gfx_ReleaseCanvas: {
    call: () => {
      const canvas = graphicServices.createCanvas(2, 2);
      canvas.release();
      return canvas.isInvalid();
    },
    seen: true,
    failed: true
  },
  pl_gfx_LoadImage: {
    pool: true,
    call: () => load('loadImage', ['path']).then(outcomeOf),
    seen: 'canvas',
    failed: 'Error on loading image',
    zero: 'Error on loading image'
  },
  pl_gfx_LoadFont: {
    pool: true,
    call: () => load('loadFont', ['path', 9]).then(outcomeOf),
    seen: 'font',
    failed: 'Error on loading font',
    zero: 'font'
  },
  pl_gfx_ReleaseFont: {
    // By the collector alone.
    call: (time, reached) =>
      load('loadFont', ['path', 9])
        .then(() => undefined)
        .then(() => collect(reached)),
    seen: true,
    failed: true
  },
  pl_gfx_GetVRAMStats: {
    call: () => graphicServices.getVRAMStats().used >= 0,
    seen: true,
    failed: true
  }
};

/** Rows of both kinds of player. */
function players(kind, prefix) {
  const names = workers.PLAYERS[kind];
  const refused = kind === 'media' ? 'Error on getPlayer' : 'ERROR';
  const rows = {};
  rows[names.create] = {
    pool: true,
    call: () => makePlayer(kind).then(outcomeOf),
    seen: kind === 'media' ? 'mediaPlayer' : 'adPlayer',
    failed: refused,
    zero: refused
  };
  // The worker waits for good where the device has no callback to call.
  rows[names.register] = {
    pool: true,
    call: () =>
      workers
        .newPlayer(kind)
        .then((made) => workers.follow(kind, made))
        .then((follower) => workers.endAll([follower]))
        .then(() => 'ended'),
    seen: 'ended',
    failed: 'ended'
  };
  rows[`${prefix}GetTime`] = {
    call: () => subjects[kind].getTime(),
    seen: noTime,
    failed: noTime
  };
  rows[`${prefix}GetBufferedTimes`] = {
    call: () => subjects[kind].getBufferedTimes(),
    seen: kind === 'media' ? [] : undefined,
    failed: kind === 'media' ? allRoom(noRange) : noRange
  };
  return rows;
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
    pl_media_UrlPlayer_SetPlaybackSpeed: {
      call: () => subjects.media.setPlaybackSpeed(2),
      seen: 2,
      failed: 2
    },
    pl_media_UrlPlayer_GetTracks: {
      call: () => subjects.media.getTracks('audio'),
      failed: allRoom({ id: 0, language: '' })
    }
  }
);

const stores = {
  pl_persistent_GetPersistent: {
    call: () => dataServices.getPersistent('another') instanceof quiravent.persistent,
    seen: true,
    failed: false,
    zero: false
  },
  pl_persistent_GetValue: {
    call: () => subjects.store.get('key'),
    seen: 'value',
    failed: undefined
  },
  pl_persistent_SetValue: { call: () => subjects.store.set('key', 'value') },
  pl_persistent_GetAllValues: {
    call: () => subjects.store.getAll(),
    seen: { key: 'value' },
    failed: {}
  }
};

const television = Object.assign(
  silent('live', 'pl_dtv_Player_', {
    start: [],
    stop: [],
    setBounds: [rect],
    setVolume: [0.5],
    toggleClosedCaption: [true]
  }),
  {
    pl_dtv_Action_getPlayer: {
      call: () => tunerServices.getPlayer(1, 2, 3) instanceof quiravent.dtvplayer,
      seen: true,
      failed: false,
      zero: false
    },
    pl_dtv_Action_releasePlayer: { call: () => tunerServices.getPlayer(1, 2, 3).release() },
    pl_dtv_Action_selectTransportStream: {
      pool: true,
      call: () => workers.endAll([workers.openTuner('selector', 'option')]).then(() => 'ended'),
      seen: 'ended',
      failed: 'ended'
    },
    pl_dtv_Action_unselectTransportStream: {
      pool: true,
      call: () => workers.endAll([workers.openTuner('selector', 'option')]).then(() => 'ended'),
      seen: 'ended',
      failed: 'ended'
    }
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
  pl_input_SetCallback_KeyPress: {
    pool: true,
    call: () => openAndEndInput('keyRelease'),
    seen: 'ended',
    failed: 'ended'
  },
  pl_input_SetCallback_KeyRelease: {
    pool: true,
    call: () => openAndEndInput('keyPress'),
    seen: 'ended',
    failed: 'ended'
  },
  pl_platform_GetRuntimeState: {
    call: () => platformServices.getRuntimeState(),
    seen: 'running',
    failed: 'unknown'
  },
  pl_platform_SetRuntimeState: {
    call: () => platformServices.setRuntimeState('running'),
    seen: true,
    failed: true
  },
  pl_platform_Exit: { call: () => platformServices.exit() },
  pl_platform_Restart: { call: () => platformServices.restart(), seen: true, failed: false },
  pl_platform_ToggleLiveDTV: { call: () => platformServices.toggleLiveDTV(false) },
  pl_platform_GetLiveDTVStatus: {
    call: () => platformServices.getLiveDTVStatus(),
    seen: false,
    failed: false
  },
  pl_platform_SetReferenceDate: { call: () => platformServices.setReferenceDate(5) }
};

// From here on the channel is there, which "exit" would wait for. Fetched anew while there are none.
const properties = {
  pl_platform_InitProperties: {
    call: () => platformServices.initProperties(),
    seen: {},
    failed: {}
  },
  pl_platform_SetCallback_RuntimeStateChange: {
    call: () => platformServices.initProperties(),
    seen: {},
    failed: {}
  }
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
