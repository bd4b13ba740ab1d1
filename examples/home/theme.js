'use strict';

// How everything looks: sizes in pixels of the 1280 by 720 screen, colours, fonts. Televisions may
// cut off the outermost few per cent of a picture, so nothing that matters lies outside the margins.

const screen = { width: 1280, height: 720 };
const margin = { x: 64, y: 30 };

const colors = {
  background: '#0b1020',
  panel: '#161d2f',
  raised: '#2a3449',
  text: '#f5f7fa',
  quiet: '#b4bfd0',
  onAccent: '#0b1020'
};

// Each is light enough for dark text on it and for a frame around any poster.
const accents = {
  Amber: '#ffb454',
  Teal: '#4fd1c5',
  Sky: '#7ab4ff',
  Rose: '#ff8fa3',
  Lime: '#b6e06a',
  Lilac: '#c7a6ff'
};

// Style of text: font and height of the em. Below 17 pixels nothing can be read from a sofa.
const fonts = {
  hero: ['InterDisplay-Bold', 46],
  title: ['InterDisplay-Bold', 36],
  heading: ['Inter-SemiBold', 22],
  clock: ['Inter-SemiBold', 24],
  body: ['Inter-Regular', 20],
  strong: ['Inter-SemiBold', 20],
  small: ['Inter-Medium', 17]
};

// A picture has the size of `full`. On the home screen it rests at `rest` and grows to `focus`.
const poster = {
  full: { w: 320, h: 480 },
  focus: { w: 148, h: 222 },
  rest: { w: 132, h: 198 },
  radius: 20,
  pitch: 168
};

const duration = 220;

module.exports = { accents, colors, duration, fonts, margin, poster, screen };
