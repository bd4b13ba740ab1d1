#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "lineup/streams/loop.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop::lineup {

using Packet = std::array<uint8_t, TransportPacket::kSize>;
using Packets = std::vector<Packet>;

/// Continuity counters have 4 bits: a stream with a multiple of that many packets goes on without a
/// break where its file begins again.
constexpr size_t kContinuityModulus = 16;

/// A packet with a part of a larger unit (ISO/IEC 13818-1, 2.4.3); what the part leaves free is
/// stuffing in the adaptation field.
struct PayloadPart {
    Pid pid = 0;
    uint8_t continuity = 0;  ///< cut to its lowest bits
    bool startsUnit = false;
    bool isRandomAccess = false;
    const uint8_t* data = nullptr;
    size_t size = 0;  ///< at most kMostPayload, or kMostMarkedPayload
};
constexpr size_t kMostPayload = TransportPacket::kSize - 4;
constexpr size_t kMostMarkedPayload = kMostPayload - 2;  ///< with isRandomAccess

Packet payloadPacket(const PayloadPart& part);

/// A packet that carries a clock reference and nothing else. continuity: of the packet with payload
/// that went before. isFirst: the clock and the counter begin anew.
Packet clockPacket(Pid pid, uint8_t continuity, Ticks clock, bool isFirst);

/// A packet that keeps the rate constant.
Packet nullPacket();

}  // namespace quiravent::desktop::lineup
