#pragma once

#include <array>
#include <cstdint>

namespace quiravent::desktop {

/// Why a medium can't be fetched or played: the value beside fetch_error and playback_error.
enum class MediaError : uint8_t {
    none = 0,
    unknown = 1,
    notFound = 2,        ///< no such file; HTTP 404 and 410
    accessDenied = 3,    ///< no permission; HTTP 401, 403 and 407
    unreachable = 4,     ///< unknown host, no route, connection refused
    timeout = 5,         ///< no answer or no data within the time limit
    serverError = 6,     ///< HTTP 5xx
    requestRefused = 7,  ///< any other HTTP 4xx
    connectionLost = 8,  ///< the transfer broke off, or reading failed
    badLocation = 9,     ///< not a URL or path that the device can open
    notMedia = 10,       ///< the data are no medium that the device knows, or damaged
    noTracks = 11,       ///< neither picture nor sound in it
    unknownCodec = 12,   ///< a track is coded in a way that the device can't decode
    undecodable = 13,    ///< the data of a track can't be decoded
    truncated = 14,      ///< the medium ends more than a second before its stated duration
    noMemory = 15,       ///< no memory or other resource left
    notSeekable = 16,    ///< the source can't go to another position
};

/// Value and text of every error, in rising order; docs are written from this table.
struct MediaErrorText {
    MediaError error;
    const char* text;
};
extern const std::array<MediaErrorText, 17> kMediaErrors;

const char* describe(MediaError error);

/// The class of a (negative) error of the FFmpeg libraries; `none` for what is no error.
MediaError mediaErrorOf(int averror);

}  // namespace quiravent::desktop
