#pragma once

#include <array>
#include <cstdint>

#include "television/ContinuityCheck.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// What has been counted since the selection.
struct SignalStatistics {
    struct OfPid {
        uint64_t packets = 0;
        uint64_t continuityErrors = 0;
    };

    uint64_t packets = 0;
    uint64_t damagedPackets = 0;  ///< marked so, or without their first byte
    uint64_t scrambledPackets = 0;
    uint64_t continuityErrors = 0;  ///< places at which packets are missing
    uint64_t faultySections = 0;
    uint64_t syncLosses = 0;
    double bitRate = 0;  ///< of the last second or so; 0 without a signal
    std::array<OfPid, kPidCount> pids{};

    void count(const TransportPacket& packet, bool isGap) {
        OfPid& ofPid = pids[packet.pid()];
        ++packets;
        ++ofPid.packets;
        if (packet.isScrambled()) ++scrambledPackets;
        if (!isGap) return;
        ++continuityErrors;
        ++ofPid.continuityErrors;
    }
};

}  // namespace quiravent::desktop
