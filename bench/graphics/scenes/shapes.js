'use strict';

const { HEIGHT, WIDTH } = require('../contestants');

const STYLE = { r: 250, g: 180, b: 40, a: 255 };
const CSS = 'rgb(250, 180, 40)';

/** Half of them outlines, a third of them arcs. */
const ellipses = Array.from({ length: 40 }, (_, i) => ({
  mode: i % 2 === 0 ? 'fill' : 'outline',
  xc: 80 + (i % 8) * 160,
  yc: 80 + Math.floor(i / 8) * 140,
  radiusx: 40 + (i % 5) * 8,
  radiusy: 30 + (i % 4) * 9,
  start: i % 3 === 0 ? 30 : 0,
  end: i % 3 === 0 ? 250 : 360
}));

const radians = (degrees) => (degrees * Math.PI) / 180;

const drawnEllipses = {
  name: '40 ellipses',
  aim: 1.3,
  ours: ({ newCanvas }) => {
    const canvas = newCanvas();
    canvas.setColor(STYLE);
    return {
      canvas,
      frame: () => {
        for (const e of ellipses) {
          canvas.drawEllipse(e.mode, e.xc, e.yc, e.radiusx, e.radiusy, e.start, e.end);
        }
      }
    };
  },
  peer: ({ newContext }) => {
    const context = newContext();
    context.fillStyle = CSS;
    context.strokeStyle = CSS;
    context.lineWidth = 1;
    const draw = (e) => {
      const inset = e.mode === 'fill' ? 0 : 0.5;
      const whole = e.end - e.start >= 360;
      context.beginPath();
      if (!whole && e.mode === 'fill') context.moveTo(e.xc, e.yc);
      const [rx, ry] = [e.radiusx - inset, e.radiusy - inset];
      context.ellipse(e.xc, e.yc, rx, ry, 0, radians(e.start), radians(e.end));
      if (e.mode === 'fill') context.fill();
      else context.stroke();
    };
    return { context, frame: () => ellipses.forEach(draw) };
  }
};

const lines = Array.from({ length: 200 }, (_, i) => ({
  x1: (i * 131) % WIDTH,
  y1: (i * 71) % HEIGHT,
  x2: (i * 257 + 400) % WIDTH,
  y2: (i * 173 + 300) % HEIGHT
}));

const drawnLines = {
  name: '200 lines',
  aim: 1.4,
  tolerance: 0.4,
  ours: ({ newCanvas }) => {
    const canvas = newCanvas();
    canvas.setColor(STYLE);
    return {
      canvas,
      frame: () => {
        for (const line of lines) canvas.drawLine(line.x1, line.y1, line.x2, line.y2);
      }
    };
  },
  peer: ({ newContext }) => {
    const context = newContext();
    context.strokeStyle = CSS;
    context.lineWidth = 1;
    return {
      context,
      frame: () => {
        for (const line of lines) {
          context.beginPath();
          context.moveTo(line.x1 + 0.5, line.y1 + 0.5);
          context.lineTo(line.x2 + 0.5, line.y2 + 0.5);
          context.stroke();
        }
      }
    };
  }
};

module.exports = [drawnEllipses, drawnLines];
