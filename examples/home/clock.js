'use strict';

const days = ['Sunday', 'Monday', 'Tuesday', 'Wednesday', 'Thursday', 'Friday', 'Saturday'];
const months = [
  'January',
  'February',
  'March',
  'April',
  'May',
  'June',
  'July',
  'August',
  'September',
  'October',
  'November',
  'December'
];

const twoDigits = (number) => (number < 10 ? `0${number}` : String(number));

/** "20:47", or "8:47 PM" where style is "12 hours". */
function timeText(date, style) {
  const minutes = twoDigits(date.getMinutes());
  if (style !== '12 hours') return `${twoDigits(date.getHours())}:${minutes}`;
  return `${date.getHours() % 12 || 12}:${minutes} ${date.getHours() < 12 ? 'AM' : 'PM'}`;
}

/** "Friday 21 November" */
function dateText(date) {
  return `${days[date.getDay()]} ${date.getDate()} ${months[date.getMonth()]}`;
}

/** Milliseconds until the clock shows another time. */
function untilNextMinute(date) {
  return 60000 - (date.getTime() % 60000);
}

module.exports = { dateText, timeText, untilNextMinute };
