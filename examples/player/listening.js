'use strict';

/**
 * A function that has the events of a player told to `hear(event, value)`, in place of those of the
 * player before. Listeners are kept for good, also those of players that are long gone: so all players
 * get the same ones, and no player and no page is kept with them.
 */
function makeListening() {
  let hear = () => {};
  const onEvent = (event, value) => hear(event, value);
  const onEnd = () => {};
  const onError = (error) => console.error(error);
  return (player, next) => {
    hear = next;
    player.registerListener(onEvent, onEnd, onError);
  };
}

module.exports = { makeListening };
