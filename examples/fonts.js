'use strict';

// Where the examples find their font. A set-top application would bring its fonts along; these take
// "Inter" (Open Font License) from where Linux distributions install it.

const fs = require('fs');
const path = require('path');

const folders = [
  process.env.FONT_FOLDER,
  '/usr/share/fonts/opentype/inter',
  '/usr/share/fonts/truetype/inter',
  '/usr/share/fonts/inter',
  '/usr/local/share/fonts/inter'
].filter((folder) => folder);

/** The file of a font such as "Inter-Regular". Throws when it isn't installed. */
function fontFile(name) {
  const files = folders.map((folder) => path.join(folder, `${name}.otf`));
  const found = files.find((file) => fs.existsSync(file));
  if (!found) {
    throw new Error(
      `the font ${name}.otf is in none of ${folders.join(', ')}. ` +
        'Install it with "apt-get install fonts-inter", or name its folder in FONT_FOLDER.'
    );
  }
  return found;
}

module.exports = { fontFile };
