'use strict';

// Which scene each picture of the catalogue shows, and in which colours. `at` places the sun or moon
// as parts of the width and height; `title` is the lettering's place and style.

const top = { at: 'top', style: 'bold' };
const bottom = { at: 'bottom', style: 'bold' };
const lightTop = { at: 'top', style: 'light' };
const lightBottom = { at: 'bottom', style: 'light' };

const pictures = {
  'aguas-claras': [
    'lake',
    lightBottom,
    {
      sky: ['#0b2447', '#19647e', '#f2a07b'],
      land: ['#2a6f8f', '#071a33'],
      light: '#ffe3b3',
      dark: '#0a2036',
      at: [0.34, 0.44]
    }
  ],
  'nuit-dete': [
    'lighthouse',
    lightTop,
    {
      sky: ['#0c1445', '#27408b', '#c874b2'],
      land: ['#131a3d', '#1c2150', '#2b3c7c', '#16224f'],
      light: '#ffe9a8',
      accent: '#d1495b',
      dark: '#0d1230'
    }
  ],
  'der-grosse-uebergang': [
    'mountains',
    top,
    {
      sky: ['#1f3b63', '#6a93b8', '#f6d7b0'],
      land: ['#a9bdd0', '#6d88a6', '#3d5878', '#16273d'],
      light: '#fff3d6',
      at: [0.72, 0.4]
    }
  ],
  'sao-vicente': [
    'city',
    bottom,
    {
      sky: ['#ff7b54', '#ffb26b', '#ffe8a3'],
      land: ['#e08a6d', '#a34f5b', '#4a1f3d'],
      light: '#fff0b8',
      at: [0.62, 0.34]
    }
  ],
  'gruesse-aus-koeln': [
    'river',
    bottom,
    {
      sky: ['#141b41', '#4b3f72', '#e58f65'],
      land: ['#2b2a55', '#3a3768', '#12163a'],
      light: '#ffd27d',
      dark: '#141433'
    }
  ],
  'eclipse-totale': [
    'eclipse',
    { at: 'bottom', style: 'wide' },
    { sky: ['#05060f', '#140f2d', '#2d1a3f'], light: '#fff1cf', accent: '#ff8c42', dark: '#05060c' }
  ],
  'o-ultimo-trem': [
    'viaduct',
    top,
    {
      sky: ['#0f2027', '#2c5364', '#e0a458'],
      land: ['#6b7f7a', '#3c5750', '#1d332f'],
      light: '#ffdf91',
      accent: '#a63d40',
      dark: '#14211f'
    }
  ],
  'petit-nuage': [
    'littleCloud',
    { at: 'top', style: 'bold', ink: '#1d3557' },
    {
      sky: ['#8ecae6', '#bde0fe', '#fefae0'],
      land: ['#95d5b2', '#52b788'],
      light: '#ffd166',
      dark: '#33415c'
    }
  ],
  'lile-des-brumes': [
    'island',
    lightTop,
    {
      sky: ['#2f4858', '#86a8a6', '#f1e3cb'],
      land: ['#7d9a9b', '#4d7072', '#274b50', '#12313a'],
      mist: '#eef3ee',
      light: '#fff6de',
      at: [0.28, 0.3]
    }
  ],
  hoehenflug: [
    'balloons',
    { at: 'bottom', style: 'bold' },
    {
      sky: ['#3a86c8', '#9bd1e5', '#fde2b3'],
      land: ['#8ab17d', '#5a8f69', '#2f5d50'],
      light: '#fff3c4'
    }
  ],
  'alem-do-sertao': [
    'dunes',
    top,
    {
      sky: ['#7b2d26', '#e76f51', '#f4c27a'],
      land: ['#e9a15b', '#c8703a', '#8f4225', '#4f2118'],
      light: '#ffe8b6',
      at: [0.7, 0.42]
    }
  ],
  'les-geants-du-nord': [
    'iceberg',
    { at: 'bottom', style: 'light' },
    { sky: ['#12355b', '#4c86a8', '#c7e3ec'], land: ['#7fa9bd', '#2f86a6', '#062b45'] }
  ],
  'sturm-ueber-ruegen': [
    'storm',
    bottom,
    {
      sky: ['#1b2430', '#3e4c5e', '#8b9aa6'],
      land: ['#5d7a8a', '#3d5d70', '#234358', '#0f2536'],
      light: '#fdf3b4',
      dark: '#2b3440'
    }
  ],
  'expedicao-orion': [
    'planet',
    { at: 'bottom', style: 'wide' },
    {
      sky: ['#0a0a23', '#1b1446', '#341a5c'],
      land: ['#f08a5d', '#6a2c70'],
      light: '#ffe29a',
      accent: '#9d7bff'
    }
  ],
  'la-foret-sans-fin': [
    'forest',
    lightBottom,
    {
      sky: ['#2f5d50', '#7fae8d', '#f3edc8'],
      land: ['#86a88c', '#557d66', '#2d5244', '#0f2a22'],
      light: '#fdf6cf'
    }
  ],
  'das-gewaechshaus': [
    'leaves',
    { at: 'top', style: 'bold' },
    {
      sky: ['#0b3d2e', '#1f6f54', '#c2e59c'],
      land: ['#14532d', '#1e7a45', '#2f9e5f', '#56b870', '#2f9e5f', '#1e7a45', '#14532d'],
      light: '#f6ffd9',
      accent: '#7a3b1d'
    }
  ],
  'a-casa-da-ladeira': [
    'house',
    lightBottom,
    {
      sky: ['#1a1a40', '#4a2c6d', '#d98f8f'],
      land: ['#1d1433', '#3a2a55'],
      light: '#f7e7c1',
      accent: '#ffb703',
      dark: '#120c22'
    }
  ],
  'le-cafe-de-laube': [
    'cafe',
    bottom,
    {
      sky: ['#e07a5f', '#e9a178', '#f2cc8f'],
      land: ['#f6d9a8', '#6f4330', '#fff0d6'],
      light: '#fff7ea',
      dark: '#8a4f3a'
    }
  ],
  'zwoelf-schluessel': [
    'tiles',
    { at: 'bottom', style: 'bold', band: '#1d1d2b' },
    {
      sky: ['#1d1d2b', '#1d1d2b'],
      land: ['#d62828', '#f77f00', '#fcbf49', '#eae2b7', '#003049', '#2a9d8f'],
      dark: '#1d1d2b'
    }
  ],
  'vidro-quebrado': [
    'shards',
    { at: 'bottom', style: 'wide', band: '#0d1020' },
    {
      sky: ['#0d1020', '#0d1020'],
      land: ['#3a0ca3', '#4361ee', '#4cc9f0', '#7209b7', '#f72585', '#b5179e', '#480ca8'],
      dark: '#0d1020'
    }
  ],
  'melodie-en-gris': [
    'record',
    { at: 'top', style: 'light' },
    { sky: ['#6c757d', '#8d99a4', '#ced4da'], accent: '#e63946', dark: '#1b1f24' }
  ],
  'fraeulein-schoenfeld': [
    'figure',
    bottom,
    {
      sky: ['#2b1b17', '#4a2c20', '#2b1b17'],
      land: ['#e6a15c'],
      light: '#ffdf9e',
      accent: '#f1faee',
      dark: '#17100e'
    }
  ],
  'le-renard-bleu': [
    'fox',
    { at: 'bottom', style: 'bold' },
    { sky: ['#ffb4a2', '#ffcdb2', '#ffe5d9'], land: ['#6d6875', '#4a4458'], light: '#fff4e6' }
  ],
  'pe-de-vento': [
    'kites',
    { at: 'bottom', style: 'bold' },
    { sky: ['#4cc9f0', '#90e0ef', '#e3f8ff'], land: ['#6ab04c', '#3f7d3a'] }
  ],
  'der-baer-und-das-boot': [
    'boat',
    top,
    {
      sky: ['#0d1b4c', '#3b4ba3', '#f3a9c4'],
      land: ['#4c5fc0', '#0d1b4c'],
      light: '#fff2c9',
      dark: '#2b1a12',
      fur: '#8a5a3b',
      at: [0.68, 0.42],
      stars: true
    }
  ],
  'o-jardim-de-ines': [
    'garden',
    { at: 'bottom', style: 'bold' },
    {
      sky: ['#ffe5b4', '#fff3d6', '#e6f5d0'],
      land: ['#588157', '#2f5d3a'],
      petals: ['#ef476f', '#8338ec', '#f78c2b', '#118ab2', '#e05299'],
      light: '#ffd166'
    }
  ],
  'la-lune-et-le-boulanger': [
    'bakery',
    { at: 'bottom', style: 'light' },
    {
      sky: ['#10184a', '#34418f', '#8f7bc7'],
      land: ['#232a66', '#c98f5f', '#7a3f35'],
      light: '#ffe9a6',
      accent: '#d1495b',
      dark: '#171436'
    }
  ],
  winterkoenig: [
    'mountains',
    lightTop,
    {
      sky: ['#16324f', '#4f7ca6', '#dcebf5'],
      land: ['#eef6fb', '#bcd5e6', '#7fa5c2', '#294b68'],
      light: '#ffffff',
      at: [0.3, 0.3],
      stars: true
    }
  ]
};

const background = {
  scene: 'bay',
  colors: {
    sky: ['#070d22', '#0f2447', '#2b6a7c', '#0f2447'],
    land: ['#2a5066', '#173548', '#0b1f2e'],
    water: ['#1d4d60', '#0a1c30', '#060d1a'],
    light: '#f4f1de'
  }
};

module.exports = { background, pictures };
