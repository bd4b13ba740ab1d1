// Made from devices/desktop/input/Keys.def by tools/keys.js.

/** The codes of the remote control's keys, under their names. */
declare const keys: {
  readonly GoHome: 2;
  readonly ArrowLeft: 37;
  readonly ArrowUp: 38;
  readonly ArrowRight: 39;
  readonly ArrowDown: 40;
  readonly Enter: 13;
  readonly GoBack: 461;
  readonly Exit: 27;
  readonly ContextMenu: 462;
  readonly 0: 48;
  readonly 1: 49;
  readonly 2: 50;
  readonly 3: 51;
  readonly 4: 52;
  readonly 5: 53;
  readonly 6: 54;
  readonly 7: 55;
  readonly 8: 56;
  readonly 9: 57;
  readonly ColorF0Red: 403;
  readonly ColorF1Green: 404;
  readonly ColorF2Yellow: 405;
  readonly ColorF3Blue: 406;
  readonly ColorF4Grey: 407;
  readonly ColorF5Brown: 408;
  readonly ChannelUp: 427;
  readonly ChannelDown: 428;
  readonly PageUp: 33;
  readonly PageDown: 34;
  readonly AudioVolumeUp: 447;
  readonly AudioVolumeDown: 448;
  readonly AudioVolumeMute: 449;
  readonly MediaPlayPause: 463;
  readonly MediaPlay: 415;
  readonly MediaPause: 19;
  readonly MediaStop: 413;
  readonly MediaRewind: 412;
  readonly MediaFastForward: 417;
  readonly MediaTrackPrevious: 424;
  readonly MediaTrackNext: 425;
  readonly MediaRecord: 416;
  readonly Info: 457;
  readonly Guide: 458;
  readonly Teletext: 459;
  readonly Subtitle: 460;
  readonly Power: 409;
};

export = keys;
