'use strict';

// What the film says, in both languages: [from second, to second, English, Portuguese].

const lines = [
  [1, 4, 'The bay is quiet tonight.', 'A baía está calma esta noite.'],
  [
    5,
    8,
    'Somebody has left a light on,\nout on the other shore.',
    'Alguém deixou uma luz acesa,\nlá na outra margem.'
  ],
  [
    10,
    14,
    'We could row across before the moon is down.',
    'Podíamos remar até lá antes de a lua se pôr.'
  ],
  [17, 21, 'Morning finds us in the mountains.', 'A manhã encontra-nos nas montanhas.'],
  [22, 26, 'It is further than it looked.', 'É mais longe do que parecia.'],
  [28, 31, 'Everything is.', 'Tudo é.'],
  [33, 37, 'And there is the sea again.', 'E lá está o mar outra vez.'],
  [39, 44, 'I told you we would be back in time.', 'Eu disse que voltávamos a tempo.']
];

const two = (number) => (number < 10 ? `0${number}` : String(number));

function srt(column) {
  return lines
    .map((line, index) => {
      const time = (second) => `00:00:${two(second)},000`;
      return `${index + 1}\n${time(line[0])} --> ${time(line[1])}\n${line[column]}\n`;
    })
    .join('\n');
}

const subtitles = [
  { language: 'eng', text: srt(2) },
  { language: 'por', text: srt(3) }
];

module.exports = { subtitles };
