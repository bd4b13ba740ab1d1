/**
 * Quiravent: access to a set-top device for television applications.
 *
 * Numbers are converted by the script's own rules and no range is tested: a negative number reaches
 * the device as its 32-bit complement (a position of -10 lies left of the canvas), a missing one
 * counts as 0. A failure of the device is never an exception.
 */

/** A rectangle; a property that is missing counts as 0. */
export interface Rectangle {
  x?: number;
  y?: number;
  w?: number;
  h?: number;
}

/** The two ends of a line; both end pixels are drawn. */
export interface Line {
  x1?: number;
  y1?: number;
  x2?: number;
  y2?: number;
}

/** A colour by components from 0 to 255, cut to 8 bits; a missing `a` is 0: transparent. */
export interface Color {
  r?: number;
  g?: number;
  b?: number;
  a?: number;
}

/** An ellipse or a part of one; angles in degrees, clockwise from three o'clock. */
export interface Ellipse {
  mode: EllipseMode;
  xc: number;
  yc: number;
  radiusx: number;
  radiusy: number;
  ang_start: number;
  ang_end: number;
}

export type EllipseMode = 'fill' | 'outline';
export type HorizontalAlign = 'left' | 'center' | 'right';
export type VerticalAlign = 'baseline' | 'top' | 'middle' | 'bottom';

/** How what is drawn and what is there are put together; any other text is the default mode. */
export type BlendMode =
  | 'SRC_OVER'
  | 'SRC_ATOP'
  | 'SRC_IN'
  | 'SRC_OUT'
  | 'DST_OVER'
  | 'DST_ATOP'
  | 'DST_IN'
  | 'DST_OUT'
  | 'ADD'
  | 'XOR'
  | 'SRC';

/** What a background job answers with when it fails; a plain object, not an `Error`. */
export interface JobError {
  message: string;
}

/** Called once: with an error and null, or with null and the result. */
export type JobCallback<T> = (error: JobError | null, result: T | null) => void;

/**
 * A loaded font. It lives as long as this object: when a font is collected, every canvas loses its
 * font and needs `setFont` again, so keep the object while you draw.
 */
export interface Font {
  // A font has no methods; the mark keeps other objects from passing as one.
  readonly __quiraventFont?: never;
}

/**
 * A drawing surface, with its own colour, clip, font, alignment, rotation, opacity and blend mode.
 *
 * On a canvas that was released, drawing does nothing and every query gives zeros.
 */
export interface Canvas {
  /** The size in pixels. */
  getSize(): { w: number; h: number };

  /**
   * Sets the colour of what is drawn: a CSS colour name, "#RGB", "#RRGGBB" or "#RRGGBBAA", or
   * components. Unknown text is opaque white; a hexadecimal pair without a digit ends the process.
   * The names "indianred" and "indigo" are known only with one and two trailing blanks. Setting
   * again the text that was last applied does nothing, even if components came in between.
   */
  setColor(color: string | Color): void;
  getColor(): { r: number; g: number; b: number; a: number };

  /** Fills a rectangle with the colour. */
  fillRect(rect: Rectangle): void;
  fillRect(x: number, y: number, w: number, h: number): void;
  /** Makes a rectangle transparent; on the screen the video below shows. */
  clearRect(rect: Rectangle): void;
  clearRect(x: number, y: number, w: number, h: number): void;
  /** Draws the outline of a rectangle, one pixel wide, inside it. */
  drawRect(rect: Rectangle): void;
  drawRect(x: number, y: number, w: number, h: number): void;
  /** Draws a line, one pixel wide. */
  drawLine(line: Line): void;
  drawLine(x1: number, y1: number, x2: number, y2: number): void;

  /** Bounds all drawing. Without an argument: 0, 0, 1280, 720, whatever the canvas's size. */
  setClip(rect?: Rectangle | null): void;
  setClip(x: number, y: number, w: number, h: number): void;
  getClip(): { x: number; y: number; w: number; h: number };

  /** Degrees clockwise, about the centre of what `compose`, `composeScaled` or `drawText` draw. */
  setRotation(degrees: number): void;
  /** 0 (invisible) to 1, of everything drawn. */
  setOpacity(opacity: number): void;

  /** Binds a font. Throws a TypeError for undefined and null. */
  setFont(font: Font): void;
  /** Draws text at a place that `setTextAlign` explains. Without a font nothing is drawn. */
  drawText(text: unknown, x: number, y: number): void;
  /** The advance width and line height of a text in pixels; zeros without a font. */
  measureText(text: unknown): { width: number; height: number };
  /** Says what x and y of `drawText` are. Before the first `setFont` it has no effect. */
  setTextAlign(horizontal?: HorizontalAlign, vertical?: VerticalAlign): void;

  /** Draws another canvas, or a part of it, at a place. */
  compose(source: Canvas, x: number, y: number, part?: Rectangle): void;
  /** Draws another canvas, or a part of it, scaled to a rectangle, by default the whole of this. */
  composeScaled(source: Canvas, destination?: Rectangle, part?: Rectangle): void;

  /** Shows what was drawn on the screen's canvas: all of it, or a rectangle. */
  flush(rect?: Rectangle | null): void;

  drawEllipse(ellipse: Ellipse): void;
  drawEllipse(
    mode: EllipseMode,
    xc: number,
    yc: number,
    radiusx: number,
    radiusy: number,
    ang_start: number,
    ang_end: number
  ): void;

  setPorterDuff(mode: BlendMode): void;

  /** Gives the surface's memory back at once. Of the screen's canvas: for good. */
  release(): void;
  /** True after `release`. */
  isInvalid(): boolean;
}

/** An open store of texts, kept across runs. */
export interface Persistent {
  /** Undefined for a missing key and for the values "", "null" and "undefined". */
  get(key: string): string | undefined;
  /**
   * Stores the value's text form; undefined and null store the empty text. There is no removal.
   * A value that can't be turned into text (a symbol) ends the process.
   */
  set(key: string, value?: unknown): void;
  /** All entries as they are stored, in the order of their keys. */
  getAll(): { [key: string]: string };
}

export const graphicServices: {
  /** The screen, 1280 by 720; each call gives a new object for the same canvas. */
  getTargetCanvas(): Canvas | undefined;
  /** A new transparent canvas; undefined for a size of zero or without memory. */
  createCanvas(width: number, height: number): Canvas | undefined;
  /** Loads a picture (PNG, JPEG, WebP) from a path or URL in the background. */
  loadImage(path: string, callback: JobCallback<Canvas>): void;
  /** Loads a font from a path or URL in the background; size is the height of the em in pixels. */
  loadFont(path: string, size: number, callback: JobCallback<Font>): void;
  /** Graphics memory in bytes. */
  getVRAMStats(): { used: number; free: number };
  /** Does nothing. */
  cleanUp(): void;
};

export const dataServices: {
  /** Opens the store of a context; undefined when it can't be opened. */
  getPersistent(context: string): Persistent | undefined;
};

/** The data listener of an event worker: what happened, and the detail, both as text. */
export type DataListener = (name: string, data: string) => void;
/** Called once, without arguments, after the last event of a worker that was closed. */
export type CompletionListener = () => void;
/** Called with the reason when a worker ends by a fault. */
export type ErrorListener = (error: Error) => void;

/**
 * Everything that has no player of its own, in the order in which it happened:
 * "keypress" and "keyrelease" with the decimal text of the key code, "runtimestatechange" with the
 * new state's name, and the messages that other processes write into the service selector pipe.
 *
 * An application makes one. It occupies a thread of the pool until it is closed; a second one takes
 * over all events for good.
 */
export interface InputWorker {
  /** Ends the worker with the next event, which is still delivered. */
  closeInput(): void;
}

export const InputWorker: {
  new (data: DataListener, completion?: CompletionListener, error?: ErrorListener): InputWorker;
  (data: DataListener, completion?: CompletionListener, error?: ErrorListener): InputWorker;
};

/**
 * What a player reports, with a value in decimal text.
 *
 * - "fetch_in_progress": the percentage of what playing needs that is there;
 * - "fetch_ready": enough is there, and tracks and duration are known;
 * - "fetch_error": it can't be played, for the reason that the value names;
 * - "playback_ready": the picture is shown and time runs, after a start or a suspension;
 * - "playback_error": it can't be played any further, for the reason that the value names;
 * - "playback_stalled": nothing is left to play, and more is waited for;
 * - "playback_recovering": it goes on after that;
 * - "playback_completed": the end is reached, or backwards the beginning;
 * - "playback_abort": the device has ended it for good;
 * - "playback_suspend": something else has the output; `resume` goes on once that is over.
 */
export type PlayerEvent =
  | 'fetch_in_progress'
  | 'fetch_ready'
  | 'fetch_error'
  | 'playback_ready'
  | 'playback_error'
  | 'playback_stalled'
  | 'playback_recovering'
  | 'playback_completed'
  | 'playback_abort'
  | 'playback_suspend';

export type TrackType = 'video' | 'audio' | 'subtitle' | 'unknown';

/** A stretch of a medium, in milliseconds. */
export interface BufferedRange {
  begin: number;
  end: number;
}

/** A track of a medium; its language is an ISO 639-2 code, "und" where it isn't known. */
export interface Track {
  id: number;
  language: string;
}

/** What both kinds of player have. Media times are in milliseconds. */
export interface Player {
  /** Plays; reads first where that is still due. After the end it begins anew. */
  start(): void;
  /** Halts; the picture stays. */
  pause(): void;
  /** Goes on after `pause` or a suspension. */
  resume(): void;
  /** Takes the picture away and goes back to the beginning; `start` plays again. */
  stop(): void;
  /**
   * Ends the player, and the event worker made last by `registerListener` for this kind of player.
   * Without a `registerListener` before it, it ends the process.
   */
  unload(): void;
  /** Zeros until the medium is known. Of a broadcast, begin and end move on. */
  getTime(): { now: number; begin: number; end: number };
  /**
   * Whole numbers: 0 is silence, 1 the medium's own loudness, 2 double; a fraction is cut off, and
   * 3 is less than 1, since the device gets 8 bits. What is no number is ignored.
   */
  setVolume(volume: number): void;
  /**
   * Has events reported from now on; call it before `fetch` or `start` to see the first ones. All
   * reports of one kind of player go to the listener registered last. Repeats of an event are told
   * only when their value rises; an event of another number than those above has an empty name.
   * A listener occupies a thread of the runtime's pool until `unload`, and `completion` follows.
   */
  registerListener(
    data: (name: PlayerEvent | '', value: string) => void,
    completion?: CompletionListener,
    error?: ErrorListener
  ): void;
}

/**
 * A player for a film, as `mediaServices.getPlayer` makes it. Its picture lies below the graphics: it
 * is seen where the screen's canvas is transparent.
 *
 * ```js
 * mediaServices.getPlayer('film.mp4', { x: 0, y: 0, w: 1280, h: 720 }, (error, player) => {
 *   if (error) throw new Error(error.message);
 *   player.registerListener((name) => name === 'playback_completed' && player.unload());
 *   player.start();
 * });
 * ```
 */
export interface MediaPlayer extends Player {
  /** Reads ahead without playing, until "fetch_ready". */
  fetch(): void;
  /** Moves and scales the picture. Throws a TypeError for undefined. */
  setBounds(bounds: Rectangle): void;
  /** Goes to a position; what is no number means 0. Before `start` it says where to begin. */
  seek(position: number): void;
  /**
   * Whole numbers, negative ones backwards; 1 is normal. Gives the speed that the device took, and
   * undefined for what is no number.
   */
  setPlaybackSpeed(speed: number): number;
  /** Does nothing. */
  getThumbnail(): void;
  /** What can be played without reading on: at most ten ranges. */
  getBufferedTimes(): BufferedRange[];
  /**
   * Plays that track. The id is one that `getTracks` gave for the type; subtitles are switched off
   * by one that no track has.
   */
  selectTrack(type: TrackType, id: number): void;
  /** At most ten; undefined, and a line on standard output, without any track of the type. */
  getTracks(type: TrackType): Track[] | undefined;
}

/**
 * A player for an advertisement, as `mediaServices.getAdPlayer` makes it. It fills the screen and has
 * neither bounds nor tracks; a film below it has to be paused by the application.
 *
 * ```js
 * film.pause();
 * mediaServices.getAdPlayer('advertisement.mp4', {}, (error, ad) => {
 *   if (error) return film.resume();
 *   ad.registerListener((name) => name === 'playback_completed' && ad.unload(), () => film.resume());
 *   ad.start();
 * });
 * ```
 */
export interface AdPlayer extends Player {
  /** The last range alone; undefined without any. */
  getBufferedTimes(): BufferedRange | undefined;
}

export const mediaServices: {
  /**
   * Makes a player in the background, for a path or a URL. Throws TypeErrors for arguments that are
   * missing; a player that can't be made is told to the callback.
   */
  getPlayer(url: string, bounds: Rectangle, callback: JobCallback<MediaPlayer>): void;
  /** Makes a player for an advertisement; the rectangle is not used, but must not be undefined. */
  getAdPlayer(url: string, bounds: Rectangle, callback: JobCallback<AdPlayer>): void;
};

/**
 * A live player of digital television, of `tunerServices.getPlayer`. It needs no selection to be
 * made, and plays when there is one. After `release` every method does nothing.
 *
 *     const tuner = new quiravent.TunerWorker('./mux.ts', '', (name, data) => console.log(data));
 *     const screen = quiravent.graphicServices.getTargetCanvas();
 *     screen.clearRect(0, 0, 1280, 720); // the picture is seen through what is clear
 *     screen.flush();
 *     const player = quiravent.tunerServices.getPlayer(256, 257, 256);
 *     if (player) {
 *       player.start();
 *       player.setBounds({ x: 320, y: 180, w: 640, h: 360 });
 *       player.setVolume(0.8);
 *       player.toggleClosedCaption('1');
 *     }
 */
export interface DTVPlayer {
  /** Shows the last key picture that was received, and goes on from there. */
  start(): void;
  /** Takes the picture away; `start` brings it back. */
  stop(): void;
  /** The whole screen until then. Throws a TypeError for undefined. */
  setBounds(bounds: Rectangle): void;
  /** 0.0 to 1.0, the broadcast's own loudness; fractions count. */
  setVolume(volume: number): void;
  /**
   * The text of a number switches captions on: that of a service inside of the pictures, or from 16
   * on the packet identifier of a subtitle stream; `true` is service 1. `false` and every number
   * switch off.
   */
  toggleClosedCaption(value: boolean | string | number): void;
  /** Ends the player; its picture is gone at once. */
  release(): void;
}

/**
 * Entry to digital television. A TunerWorker selects what is received.
 *
 *     const player = quiravent.tunerServices.getPlayer(256, 257, 256); // video, audio, clock
 *     if (player) player.start();
 */
export const tunerServices: {
  /** Reserved; does nothing. */
  getAllTransportStreams(): void;
  /** Reserved; does nothing. */
  getTableInfo(): void;
  /** Reserved; does nothing. */
  unselectTransportStream(): void;
  /**
   * A player for three packet identifiers, of which 8191 stands for none; undefined if the device
   * refuses. Fractions are cut, and 16 bits are kept.
   */
  getPlayer(videoPid: number, audioPid: number, pcrPid: number): DTVPlayer | undefined;
  /** Reserved; does nothing. */
  openDemuxFilter(): void;
};

/**
 * The selection of a transport stream, for as long as it is open. Each report is an event
 * "tunerlock" whose data is "1," when the stream is received, or "0," and the reason.
 *
 *     const tuner = new quiravent.TunerWorker(
 *       './mux.ts',
 *       '',
 *       (name, data) => console.log(name, data), // tunerlock 1,
 *       () => console.log('unselected')
 *     );
 *     setTimeout(() => tuner.closeTuner(), 5000);
 */
export interface TunerWorker {
  /** Unselects the stream; the completion listener follows. */
  closeTuner(): void;
}

export const TunerWorker: {
  new (
    selector: string,
    option: string,
    data: DataListener,
    completion?: CompletionListener,
    error?: ErrorListener
  ): TunerWorker;
  (
    selector: string,
    option: string,
    data: DataListener,
    completion?: CompletionListener,
    error?: ErrorListener
  ): TunerWorker;
};

/** The states in which the platform runs an application. */
export type RuntimeState =
  'paused' | 'running' | 'low_profile' | 'overlay' | 'suspended' | 'advertising';

export const platformServices: {
  /** The platform's properties, all texts; also starts reports of state changes and the pipe. */
  initProperties(): { [key: string]: string };
  /** Leaves the application. Blocks until a byte reaches the service selector pipe. */
  exit(): void;
  getRuntimeState(): RuntimeState | 'unknown';
  /** Asks for a state; true if its name is one, whether or not the platform obeys. */
  setRuntimeState(state: RuntimeState | string): boolean;
  toggleLiveDTV(on: boolean): void;
  getLiveDTVStatus(): boolean;
  /** Sets the platform's clock, in seconds since 1970. */
  setReferenceDate(timestamp: number): void;
  /** Starts the application anew; false if the platform refuses. */
  restart(): boolean;
  /** Asks for the events of digital television. Ends the process where the platform has none. */
  enableDTVEvents(): void;
};

/**
 * The constructors are exported for `instanceof`. Called by a script they give an object without a
 * native side, and any method call on it ends the process.
 */
export const font: { new (): Font; (): Font };
export const canvas: { new (): Canvas; (): Canvas };
export const persistent: { new (): Persistent; (): Persistent };
export const mediaPlayer: { new (): MediaPlayer; (): MediaPlayer };
export const adPlayer: { new (): AdPlayer; (): AdPlayer };
export const dtvplayer: { new (): DTVPlayer; (): DTVPlayer };
