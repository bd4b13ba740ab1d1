'use strict';

// Television: channels of a multiplex, with zapping, a banner, captions and a volume.
//
//   node examples/television [SELECTOR]
//
// SELECTOR is what the device tunes, as a path or udp://239.0.0.1:5004; by default a multiplex that
// is made of lineup.json.

const quiravent = require('quiravent');
const { makeMultiplex } = require('./multiplex');
const { TelevisionPage } = require('./page');
const { loadFonts } = require('../home/assets');
const { Pen } = require('../home/pen');
const { listen } = require('../home/remote');
const { Settings } = require('../home/settings');
const { Show } = require('../home/show');
const { fonts } = require('../home/theme');

/** An application of this one page. */
class Television {
  constructor(selector, pen) {
    this.settings = new Settings(quiravent.dataServices.getPersistent('examples/home'));
    this.now = () => new Date();
    this.show = new Show(this, pen);
    this.page = new TelevisionPage(this, selector);
    listen(
      (key) => {
        this.page.handleKey(key);
        this.changed();
      },
      () => this.page.resume()
    );
    this.changed();
  }

  changed() {
    this.show.update();
  }

  draw(pen) {
    this.page.draw(pen);
    return false;
  }

  close() {
    process.exit();
  }
}

function start(selector) {
  return loadFonts(fonts).then((loaded) => {
    const screen = quiravent.graphicServices.getTargetCanvas();
    return new Television(selector, new Pen(screen, loaded));
  });
}

Promise.resolve(process.argv[2])
  .then((selector) => selector || makeMultiplex())
  .then(start)
  .catch((error) => {
    // What is plainly an Error has a message for the user; anything else is a fault in the program.
    console.error(error.constructor === Error ? `television: ${error.message}` : error);
    process.exitCode = 1;
  });
