#pragma once

#include <optional>
#include <vector>

#include "lineup/description/fields.h"
#include "lineup/packets/Carousel.h"
#include "lineup/packets/StreamPackets.h"

namespace quiravent::desktop::lineup {

/// Everything that a multiplex is to carry in a loop.
struct Load {
    Ticks loop = 0;
    std::vector<Pid> clocks;          ///< packet identifiers that carry the clock, each once
    std::vector<TimedPacket> tables;  ///< in the order of their times
    std::vector<CodedStream> streams;

    /// Packets of the loop without clocks and stuffing.
    size_t packetCount() const;
};

/// The time between two clock references of one packet identifier; 40 ms are allowed
/// (EN 300 468 and ISO/IEC 13818-1 allow 100 ms, TR 101 290 and receivers want 40 ms).
constexpr Ticks kClockInterval = 30 * kTicksPerMillisecond;

/// Lays the packets out at a constant rate: that many packets in the loop. delay: from the clock to
/// the decoding of what arrives at that time. None when something would come too late.
std::optional<Packets> schedule(const Load& load, size_t packetCount, Ticks delay);

/// The multiplex at that rate, in bits per second, or, for 0, at the lowest one that suffices, with
/// a delay as short as it can be. Throws DeviceError when the rate doesn't suffice; place: of the
/// rate, for the message.
Packets layOut(const Load& load, uint64_t bitRate, const Place& place);

}  // namespace quiravent::desktop::lineup
