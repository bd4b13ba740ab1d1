#pragma once

#include <cstdint>

#include "media/Packet.h"

namespace quiravent::desktop {

/// Which pictures are played.
enum class PlayMode {
    all,
    keyFrames,  ///< only those that need no other one
    backwards,  ///< all, last first
};

/// What a decoder is to do until the next segment: the packets that it takes belong together.
struct Segment {
    uint32_t serial = 0;  ///< unique; 0 is none
    int64_t target = 0;   ///< play from here; what comes before is only decoded
    PlayMode mode = PlayMode::all;
    double speed = 1;
    TrackRef track;  ///< null: nothing to decode
    /// The first picture is wanted by itself, and not when as many follow as the decoder asks for.
    bool firstAtOnce = false;
};

/// Gives decoders their packets, each kind of track on a thread of its own: a medium that is read
/// ahead, or a broadcast from which packets are picked by identifier.
class PacketSource {
  public:
    struct Read {
        enum class State {
            packet,
            end,         ///< no more packets in this segment; told once, then next() waits
            newSegment,  ///< forget what is half decoded and go on with `segment`
            closed,      ///< for good
        };
        State state;
        PacketRef packet;
        bool groupEnd = false;  ///< backwards: the last packet of what is decoded as one
        Segment segment;
    };

    virtual ~PacketSource() = default;

    /// The next packet of a kind; waits for it. serial: of the segment that the caller is in.
    virtual Read next(TrackKind kind, uint32_t serial) = 0;

    /// The same without waiting; false when there is nothing to be told.
    virtual bool tryNext(TrackKind kind, uint32_t serial, Read& read) = 0;
};

}  // namespace quiravent::desktop
