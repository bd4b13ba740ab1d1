#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "media/Av.h"

namespace quiravent::desktop {

enum class TrackKind { video, audio, subtitle };
constexpr int kTrackKinds = 3;

/// The place of a kind in what is kept by kind.
constexpr size_t indexOf(TrackKind kind) { return static_cast<size_t>(kind); }

/// One track of a medium; never changes.
struct Track {
    TrackKind kind = TrackKind::video;
    uint32_t id = 0;       ///< unique within the medium, whatever the kind
    std::string language;  ///< ISO 639-2, "und" where the medium names none
    std::shared_ptr<const AVCodecParameters> codec;
    int64_t frameDuration = 0;     ///< of a picture, in microseconds; 0 where unknown
    AVRational pixelAspect{1, 1};  ///< width by height of a pixel
};
using TrackRef = std::shared_ptr<const Track>;

/// Coded data of one track. Shared between the cache and decoders; never changes.
struct Packet {
    AvPacket data;  ///< its own times are in microseconds of the medium too
    uint32_t track = 0;
    int64_t pts = 0;       ///< of presentation; never kNoTime
    int64_t dts = 0;       ///< of decoding; never kNoTime
    int64_t duration = 0;  ///< 0 where unknown
    bool key = false;      ///< decoding can begin here
    bool sparse = false;   ///< of a track with gaps between its packets: a subtitle

    size_t byteSize() const { return static_cast<size_t>(data->size) + sizeof(AVPacket) + 128; }
    int64_t end() const { return pts + duration; }
};
using PacketRef = std::shared_ptr<const Packet>;

}  // namespace quiravent::desktop
