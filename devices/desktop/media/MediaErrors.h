#pragma once

#include <array>
#include <cstdint>

namespace quiravent::desktop {

/// Why a medium can't be fetched or played: the value beside fetch_error and playback_error. What
/// each says stands below.
enum class MediaError : uint8_t {
    none = 0,
    unknown = 1,
    notFound = 2,
    accessDenied = 3,
    unreachable = 4,
    timeout = 5,
    serverError = 6,
    requestRefused = 7,
    connectionLost = 8,
    badLocation = 9,
    notMedia = 10,
    noTracks = 11,
    unknownCodec = 12,
    undecodable = 13,
    truncated = 14,
    noMemory = 15,
    notSeekable = 16,
    untrusted = 17,
};

struct MediaErrorText {
    const char* text = "";
    const char* http = "";  ///< answers of a server that count as this error
};

/// The errors by their values; docs/media.md has the same table.
inline constexpr std::array<MediaErrorText, 18> kMediaErrors{{
    {"no error"},
    {"unknown error"},
    {"not found", "HTTP 404"},
    {"access denied", "HTTP 401, 403"},
    {"host unknown or unreachable, or connection refused"},
    {"no data within the time limit"},
    {"the server reports an error of its own", "HTTP 5xx"},
    {"the server refuses the request", "other HTTP 4xx"},
    {"the transfer broke off"},
    {"not a URL or path that can be opened"},
    {"not a medium of a known format, or damaged"},
    {"neither picture nor sound in it"},
    {"no decoder for a track"},
    {"the data of a track can't be decoded"},
    {"ends more than a second before its stated duration"},
    {"no memory left"},
    {"the source can't go to another position"},
    {"the server's certificate isn't trusted"},
}};

const char* describe(MediaError error);

/// The class of a (negative) error of the FFmpeg libraries; `none` for what is no error.
MediaError mediaErrorOf(int averror);

}  // namespace quiravent::desktop
