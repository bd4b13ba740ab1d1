#pragma once

#include <vector>

#include "lineup/packets/Packet.h"
#include "lineup/streams/AccessUnit.h"

namespace quiravent::desktop::lineup {

/// What a stream carries, for its packets' heads (ISO/IEC 13818-1, 2.4.3.7).
enum class StreamContent : uint8_t { privateData = 0xBD, audio = 0xC0, video = 0xE0 };

/// A stream of a service, coded.
struct CodedStream {
    Pid pid = 0;
    StreamContent content = StreamContent::video;
    AccessUnits units;
};

/// The packets of one access unit.
struct UnitPackets {
    Ticks
        dts;  ///< from the beginning of the loop: until then all must have arrived, plus the delay
    Packets packets;
};

/// Packets a stream, one packetised unit for each access unit. delay: what is added to all times.
/// The number of packets is a multiple of kContinuityModulus.
std::vector<UnitPackets> packetise(const CodedStream& stream, Ticks delay);

}  // namespace quiravent::desktop::lineup
