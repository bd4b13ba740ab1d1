#include "media/MediaErrors.h"

#include <cerrno>

extern "C" {
#include <libavutil/error.h>
}

namespace quiravent::desktop {

const char* describe(MediaError error) { return kMediaErrors[static_cast<uint8_t>(error)].text; }

MediaError mediaErrorOf(int averror) {
    struct Entry {
        int code;
        MediaError error;
    };
    static constexpr Entry kTable[] = {
        {AVERROR(ENOENT), MediaError::notFound},
        {AVERROR_HTTP_NOT_FOUND, MediaError::notFound},
        {AVERROR(EACCES), MediaError::accessDenied},
        {AVERROR(EPERM), MediaError::accessDenied},
        {AVERROR_HTTP_UNAUTHORIZED, MediaError::accessDenied},
        {AVERROR_HTTP_FORBIDDEN, MediaError::accessDenied},
        {AVERROR(ECONNREFUSED), MediaError::unreachable},
        {AVERROR(EHOSTUNREACH), MediaError::unreachable},
        {AVERROR(ENETUNREACH), MediaError::unreachable},
        {AVERROR(EADDRNOTAVAIL), MediaError::unreachable},
        {AVERROR(ETIMEDOUT), MediaError::timeout},
        {AVERROR_EXIT, MediaError::timeout},
        {AVERROR_HTTP_SERVER_ERROR, MediaError::serverError},
        {AVERROR_HTTP_BAD_REQUEST, MediaError::requestRefused},
        {AVERROR_HTTP_OTHER_4XX, MediaError::requestRefused},
        {AVERROR(EIO), MediaError::connectionLost},
        {AVERROR(ECONNRESET), MediaError::connectionLost},
        {AVERROR(EPIPE), MediaError::connectionLost},
        {AVERROR(EISDIR), MediaError::badLocation},
        {AVERROR_PROTOCOL_NOT_FOUND, MediaError::badLocation},
        {AVERROR_INVALIDDATA, MediaError::notMedia},
        {AVERROR(EINVAL), MediaError::notMedia},
        {AVERROR_EOF, MediaError::notMedia},
        {AVERROR_STREAM_NOT_FOUND, MediaError::noTracks},
        {AVERROR_DECODER_NOT_FOUND, MediaError::unknownCodec},
        {AVERROR(ENOMEM), MediaError::noMemory},
        {AVERROR(EMFILE), MediaError::noMemory},
        {AVERROR(ENFILE), MediaError::noMemory},
        {AVERROR(ENOSYS), MediaError::notSeekable},
        {AVERROR(ESPIPE), MediaError::notSeekable},
    };
    if (averror >= 0) return MediaError::none;
    for (const Entry& entry : kTable)
        if (entry.code == averror) return entry.error;
    return MediaError::unknown;
}

}  // namespace quiravent::desktop
