#include "lineup/packets/Carousel.h"

#include <algorithm>
#include <numeric>

namespace quiravent::desktop::lineup {

namespace {

/// A section in packets of its own: each section begins in one, the last one is filled up.
void appendSection(const Bytes& section, Pid pid, uint8_t& continuity, Packets& packets) {
    Bytes payload{0};
    payload.insert(payload.end(), section.begin(), section.end());
    const size_t count = (payload.size() + kMostPayload - 1) / kMostPayload;
    payload.resize(count * kMostPayload, 0xFF);
    for (size_t i = 0; i < count; ++i) {
        PayloadPart part;
        part.pid = pid;
        part.continuity = continuity++;
        part.startsUnit = i == 0;
        part.data = payload.data() + i * kMostPayload;
        part.size = kMostPayload;
        packets.push_back(payloadPacket(part));
    }
}

Packets packetsOf(const Sections& sections, Pid pid, uint8_t& continuity) {
    Packets packets;
    for (const Bytes& section : sections) appendSection(section, pid, continuity, packets);
    return packets;
}

}  // namespace

std::vector<TimedPacket> carousel(Pid pid, Ticks interval, Ticks loop,
                                  const std::function<Sections(Ticks)>& tables) {
    uint8_t continuity = 0;
    const size_t size = packetsOf(tables(0), pid, continuity).size();
    continuity = 0;
    const auto step = static_cast<Ticks>(kContinuityModulus / std::gcd(size, kContinuityModulus));
    const Ticks wanted = (loop + interval - 1) / interval;
    const Ticks rounds = (wanted + step - 1) / step * step;
    std::vector<TimedPacket> all;
    for (Ticks round = 0; round < rounds; ++round) {
        const Ticks time = loop * round / rounds;
        for (const Packet& packet : packetsOf(tables(time), pid, continuity)) {
            all.push_back({time, packet});
        }
    }
    return all;
}

}  // namespace quiravent::desktop::lineup
