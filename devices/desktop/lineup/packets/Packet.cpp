#include "lineup/packets/Packet.h"

#include <algorithm>

namespace quiravent::desktop::lineup {

namespace {

constexpr uint8_t kStuffing = 0xFF;
constexpr unsigned kHasPayload = 0x10;
constexpr unsigned kHasAdaptation = 0x20;
constexpr uint8_t kUnitStart = 0x40;
constexpr uint8_t kDiscontinuity = 0x80;
constexpr uint8_t kRandomAccess = 0x40;
constexpr uint8_t kHasClock = 0x10;
constexpr size_t kHeaderSize = 4;

Packet emptyPacket(Pid pid, unsigned control, uint8_t continuity) {
    Packet packet;
    packet.fill(kStuffing);
    packet[0] = TransportPacket::kSync;
    packet[1] = static_cast<uint8_t>(pid >> 8);
    packet[2] = static_cast<uint8_t>(pid & 0xFF);
    packet[3] = static_cast<uint8_t>(control | (continuity & 0x0F));
    return packet;
}

}  // namespace

Packet payloadPacket(const PayloadPart& part) {
    const size_t adaptation = kMostPayload - part.size;
    Packet packet = emptyPacket(
        part.pid, adaptation > 0 ? kHasAdaptation | kHasPayload : kHasPayload, part.continuity);
    if (part.startsUnit) packet[1] |= kUnitStart;
    if (adaptation > 0) packet[kHeaderSize] = static_cast<uint8_t>(adaptation - 1);
    if (adaptation > 1) packet[kHeaderSize + 1] = part.isRandomAccess ? kRandomAccess : 0;
    std::copy_n(part.data, part.size, packet.end() - static_cast<ptrdiff_t>(part.size));
    return packet;
}

Packet clockPacket(Pid pid, uint8_t continuity, Ticks clock, bool isFirst) {
    Packet packet = emptyPacket(pid, kHasAdaptation, continuity);
    packet[4] = static_cast<uint8_t>(kMostPayload - 1);
    packet[5] = static_cast<uint8_t>(kHasClock | (isFirst ? kDiscontinuity : 0));
    const int64_t base = clock / 300;
    const int64_t extension = clock % 300;
    const auto byte = [](int64_t value) { return static_cast<uint8_t>(value & 0xFF); };
    packet[6] = byte(base >> 25);
    packet[7] = byte(base >> 17);
    packet[8] = byte(base >> 9);
    packet[9] = byte(base >> 1);
    packet[10] = byte((base & 1) << 7 | 0x7E | extension >> 8);
    packet[11] = byte(extension);
    return packet;
}

Packet nullPacket() { return emptyPacket(kNullPid, kHasPayload, 0); }

}  // namespace quiravent::desktop::lineup
