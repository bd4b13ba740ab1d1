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

/**
 * The constructors are exported for `instanceof`. Called by a script they give an object without a
 * native side, and any method call on it ends the process.
 */
export const font: { new (): Font; (): Font };
export const canvas: { new (): Canvas; (): Canvas };
export const persistent: { new (): Persistent; (): Persistent };
