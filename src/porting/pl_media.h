#pragma once

#include <cstddef>

#include "porting/pl_api.h"

// Players for a URL, and players for advertisements. A player works on threads of the layer: its
// functions only ask for something and come back at once, and what comes of it is told by events.
//
// All times are in milliseconds from the beginning of the medium. The functions that take a
// player's handle are called on the script thread, but for the two that register callbacks.
// The application may call them in any order; one that makes no sense in the player's state gives
// an error status and changes nothing.

/// The rectangle of the screen, in pixels, in which a player shows its video, below all graphics.
struct s_pl_media_bounds {
    uint32_t x;
    uint32_t y;
    uint32_t w;
    uint32_t h;
};
static_assert(sizeof(s_pl_media_bounds) == 16 && offsetof(s_pl_media_bounds, y) == 4 &&
                  offsetof(s_pl_media_bounds, w) == 8 && offsetof(s_pl_media_bounds, h) == 12,
              "four words in the order x, y, w, h");

/// A stretch of a medium, in milliseconds. Only the GetTime functions give `now` a meaning.
struct s_pl_media_timeref {
    uint32_t begin;
    uint32_t now;
    uint32_t end;
};
static_assert(sizeof(s_pl_media_timeref) == 12 && offsetof(s_pl_media_timeref, now) == 4 &&
                  offsetof(s_pl_media_timeref, end) == 8,
              "three words in the order begin, now, end");

/// One track of a medium. `type` is the track's e_pl_media_component_type, which the module doesn't
/// read. `language` is a NUL-terminated ISO 639-2 code, "und" where the medium names none.
struct s_pl_media_track_info {
    uint32_t type;
    uint32_t id;
    char language[32];
};
static_assert(sizeof(s_pl_media_track_info) == 40 && offsetof(s_pl_media_track_info, id) == 4 &&
                  offsetof(s_pl_media_track_info, language) == 8,
              "two words, then 32 bytes of text");

/// Kinds of track. The application's own text for another kind arrives as 65535.
enum e_pl_media_component_type : uint32_t {
    e_pl_media_component_type_video = 0,
    e_pl_media_component_type_audio = 1,
    e_pl_media_component_type_subtitle = 2,
    e_pl_media_component_type_unknown = 3,
    e_pl_media_component_type_invalid = 65535,
};

/// Result of creating an ad player; the module tells 0 from the rest only.
enum e_pl_ad_media_error : uint32_t {
    e_pl_ad_media_error_none = 0,
    e_pl_ad_media_error_invalid_argument = 1,
    e_pl_ad_media_error_no_resource = 2,  ///< no memory or no decoder left
    e_pl_ad_media_error_not_supported = 3,
};

/// What a player reports. The value beside it is 0 where the text names none. The module drops a
/// report whose event is the one before once more, unless its value is higher.
enum e_pl_media_event : uint32_t {
    e_pl_media_event_fetch_in_progress = 0,    ///< value: percent of what playing needs, 0 to 100
    e_pl_media_event_fetch_ready = 1,          ///< enough is there to play without a halt
    e_pl_media_event_fetch_error = 2,          ///< value: a code of the layer's own
    e_pl_media_event_playback_ready = 3,       ///< the first picture is shown, time runs
    e_pl_media_event_playback_error = 4,       ///< value: a code of the layer's own
    e_pl_media_event_playback_stalled = 5,     ///< halted, since no data are left
    e_pl_media_event_playback_recovering = 6,  ///< goes on after that
    e_pl_media_event_playback_completed = 7,   ///< the end is reached, or backwards the beginning
    e_pl_media_event_playback_abort = 8,       ///< ended by the device, for good
    e_pl_media_event_playback_suspend = 9,     ///< halted by the device, which needs the decoder
};

/// player: the handle that the callback was registered with.
using pl_media_event_callback = void (*)(uint32_t player, e_pl_media_event event,
                                         unsigned char value);

/// Makes a player; nothing is read yet. An unreachable URL is no error here but an event later.
/// Called on a pool thread; may block.
PL_API int32_t pl_media_CreateUrlPlayer(const char* url, const s_pl_media_bounds* bounds,
                                        uint32_t* handle);

/// Begins to read the medium and shows nothing: fetch_in_progress, then fetch_ready or fetch_error.
PL_API int32_t pl_media_UrlPlayer_Fetch(uint32_t handle);

/// Plays, from the beginning or where a seek went; fetches first what hasn't been. playback_ready
/// or playback_error follows.
PL_API int32_t pl_media_UrlPlayer_Start(uint32_t handle);

/// Halts; the picture stays.
PL_API int32_t pl_media_UrlPlayer_Pause(uint32_t handle);

/// Goes on after a pause.
PL_API int32_t pl_media_UrlPlayer_Resume(uint32_t handle);

/// Halts, takes the picture away and goes back to the beginning; the medium stays loaded and can be
/// started again.
PL_API int32_t pl_media_UrlPlayer_Stop(uint32_t handle);

/// Ends the player and frees all that it holds; its handle is unknown from then on. After the
/// return no callback for the player begins.
PL_API int32_t pl_media_UrlPlayer_Unload(uint32_t handle);

/// Moves the video, from the next picture on; a paused one is shown anew.
PL_API int32_t pl_media_UrlPlayer_SetBounds(uint32_t handle, const s_pl_media_bounds* bounds);

/// Goes to a position, exactly; beyond the end means the end.
PL_API int32_t pl_media_UrlPlayer_Seek(uint32_t handle, uint32_t position);

/// Tells the position, and the stretch that can be gone to. Zeros before anything is known. Never
/// waits for the network or a decoder.
PL_API int32_t pl_media_UrlPlayer_GetTime(uint32_t handle, s_pl_media_timeref* time);

/// Tells the stretches that are there to be played without reading on, in rising order. *times is
/// an array of the caller, *count its length (10); the layer fills that very array, writes neither
/// beyond it nor *times, and sets *count to the number filled, which is never more than it was.
PL_API int32_t pl_media_UrlPlayer_GetBufferedTimes(uint32_t handle, s_pl_media_timeref** times,
                                                   uint32_t* count);

/// Sets how many times as fast as normal to play: 1 is normal, 2 twice as fast, -1 backwards. 0 is
/// an invalid argument. *speed goes in and out: the layer leaves there the speed at which the
/// player really plays afterwards, also with an error status.
PL_API int32_t pl_media_UrlPlayer_SetPlaybackSpeed(uint32_t handle, int32_t* speed);

/// Sets the volume: 0 is silent, 100 the medium's own, up to 255 louder, in equal steps of
/// amplitude.
PL_API int32_t pl_media_UrlPlayer_SetVolume(uint32_t handle, uint8_t volume);

/// Gives the picture at a position, or the one shortly before at which decoding can begin, as a new
/// canvas of w by h pixels, which the caller releases with pl_gfx_ReleaseCanvas.
PL_API int32_t pl_media_UrlPlayer_GetThumbnail(uint32_t handle, uint32_t position, uint32_t w,
                                               uint32_t h, uint32_t* canvas);

/// Tells the tracks of a kind, in the medium's order. *tracks, *count: as the array of
/// pl_media_UrlPlayer_GetBufferedTimes. An unknown kind has none.
PL_API int32_t pl_media_UrlPlayer_GetTracks(uint32_t handle, e_pl_media_component_type type,
                                            s_pl_media_track_info** tracks, uint32_t* count);

/// Plays the track of a kind with this id, as pl_media_UrlPlayer_GetTracks told it, instead of the
/// present one.
PL_API int32_t pl_media_UrlPlayer_SelectTrack(uint32_t handle, e_pl_media_component_type type,
                                              uint32_t id);

/// Registers who is told the player's events, instead of the one before. Events from before are not
/// told again. Called on a pool thread.
PL_API int32_t pl_media_SetCallback_Event(uint32_t handle, pl_media_event_callback callback);

/// Makes a player for an advertisement, which fills the screen. Otherwise as
/// pl_media_CreateUrlPlayer.
PL_API e_pl_ad_media_error pl_media_CreateAdPlayer(const char* url, uint32_t* handle);

/// The functions of an ad player do what those of a URL player do.
PL_API int32_t pl_media_AdPlayer_Start(uint32_t handle);
PL_API int32_t pl_media_AdPlayer_Pause(uint32_t handle);
PL_API int32_t pl_media_AdPlayer_Resume(uint32_t handle);
PL_API int32_t pl_media_AdPlayer_Stop(uint32_t handle);
PL_API int32_t pl_media_AdPlayer_Unload(uint32_t handle);
PL_API int32_t pl_media_AdPlayer_GetTime(uint32_t handle, s_pl_media_timeref* time);
PL_API int32_t pl_media_AdPlayer_GetBufferedTimes(uint32_t handle, s_pl_media_timeref** times,
                                                  uint32_t* count);
PL_API int32_t pl_media_AdPlayer_SetVolume(uint32_t handle, uint8_t volume);

/// As pl_media_SetCallback_Event, for an ad player.
PL_API int32_t pl_ad_SetCallback_Event(uint32_t handle, pl_media_event_callback callback);
