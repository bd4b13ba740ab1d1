#pragma once

#include "porting/pl_media.h"

// Digital television: the one tuner, and live players for streams of what it receives. Called on
// the script thread where nothing else is said. Selecting and playing are independent: a player may
// be made and started before its stream is there, and plays when it comes.

/// What became of the tuner.
enum e_pl_dtv_error : uint32_t {
    e_pl_dtv_error_none = 0,  ///< locked: a transport stream with its tables is received
    e_pl_dtv_error_resource_unavailable = 1,   ///< the tuner or another part is taken
    e_pl_dtv_error_operation_unavailable = 2,  ///< not at present
    e_pl_dtv_error_not_allowed = 3,
    e_pl_dtv_error_not_supported = 4,
    e_pl_dtv_error_invalid_parameter = 5,  ///< the selector or the option
    e_pl_dtv_error_data_unavailable = 6,
    e_pl_dtv_error_no_signal = 7,
    e_pl_dtv_error_service_not_found = 8,
    e_pl_dtv_error_media_not_found = 9,
    e_pl_dtv_error_unavailable = 65535,  ///< no digital television on this device
};

using pl_dtv_action_callback = void (*)(e_pl_dtv_error error);

/// Makes a live player for the streams with these packet identifiers, 0 to 8191; 8191 means none of
/// that kind, more is an invalid argument. It is stopped, fills the screen, and its volume is 100.
/// On success the caller releases *handle with pl_dtv_Action_releasePlayer. May block shortly.
PL_API int32_t pl_dtv_Action_getPlayer(uint16_t video_pid, uint16_t audio_pid, uint16_t pcr_pid,
                                       uint32_t* handle);

/// Stops and releases a player. Called once for each handle.
PL_API int32_t pl_dtv_Action_releasePlayer(uint32_t handle);

/// Selects a transport stream, instead of the one before. What the two texts mean is the layer's
/// affair; option may be null, which means none. The callback is told the outcome, and then each
/// change of it, until the selection ends; it may be called from inside this function. Called on a
/// pool thread; may block.
PL_API int32_t pl_dtv_Action_selectTransportStream(const char* selector, const char* option,
                                                   pl_dtv_action_callback callback);

/// Ends the selection that holds at this moment; without one, does nothing. After the return no
/// callback of that selection begins. Called on a pool thread; may block.
PL_API int32_t pl_dtv_Action_unselectTransportStream();

PL_API int32_t pl_dtv_Player_Start(uint32_t handle);

/// Stops and takes the picture away; the player can be started again.
PL_API int32_t pl_dtv_Player_Stop(uint32_t handle);

/// Moves the video, from the next picture on.
PL_API int32_t pl_dtv_Player_SetBounds(uint32_t handle, const s_pl_media_bounds* bounds);

/// As pl_media_UrlPlayer_SetVolume.
PL_API int32_t pl_dtv_Player_SetVolume(uint32_t handle, uint8_t volume);

/// Shows closed captions or hides them. value: which ones, when on: 1 to 15 the caption service of
/// that number inside the video stream, 16 and above the packet identifier of a subtitle stream.
PL_API int32_t pl_dtv_Player_ToggleClosedCaption(uint32_t handle, bool on, uint16_t value);

/// Closes a demultiplexer filter. No function of this interface opens one yet.
PL_API int32_t pl_dtv_Demux_closeFilter(uint32_t handle);
