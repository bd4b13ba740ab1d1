#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <vector>

#include "television/StreamListener.h"

namespace quiravent::test {

using Bytes = std::vector<uint8_t>;

/// A packetised elementary stream's packet of stream 0xE0. length: as it is told; 0 for none.
inline Bytes pes(const Bytes& data, int64_t pts, size_t length = 0) {
    Bytes bytes{0,
                0,
                1,
                0xE0,
                static_cast<uint8_t>(length >> 8U),
                static_cast<uint8_t>(length),
                0x80,
                0x80,
                5,
                static_cast<uint8_t>(0x21 | (pts >> 29 & 0x0E)),
                static_cast<uint8_t>(pts >> 22),
                static_cast<uint8_t>(1 | (pts >> 14 & 0xFE)),
                static_cast<uint8_t>(pts >> 7),
                static_cast<uint8_t>(1 | (pts << 1 & 0xFE))};
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

/// Transport packets of one stream that carry some bytes.
class TransportPackets {
  public:
    explicit TransportPackets(desktop::Pid pid) : m_pid(pid) {}

    /// Calls use(StreamPacket) for each; change(bytes, number) may spoil it before.
    template <class Use, class Change>
    void carry(const Bytes& bytes, Use use, Change change) {
        constexpr size_t kPayload = 184;
        for (size_t at = 0, number = 0; at < bytes.size(); at += kPayload, ++number) {
            std::array<uint8_t, desktop::TransportPacket::kSize> packet{};
            packet.fill(0xFF);
            const size_t size = std::min(kPayload, bytes.size() - at);
            const size_t stuffing = kPayload - size;
            packet[0] = desktop::TransportPacket::kSync;
            packet[1] = static_cast<uint8_t>((at == 0 ? 0x40 : 0) | m_pid >> 8U);
            packet[2] = static_cast<uint8_t>(m_pid);
            packet[3] = static_cast<uint8_t>((stuffing > 0 ? 0x30 : 0x10) | (m_counter++ & 0x0F));
            if (stuffing > 0) packet[4] = static_cast<uint8_t>(stuffing - 1);
            if (stuffing > 1) packet[5] = 0;
            std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), size,
                        packet.begin() + static_cast<std::ptrdiff_t>(4 + stuffing));
            desktop::StreamPacket stream{desktop::TransportPacket(packet.data()), 0, false, false};
            change(packet, stream, number);
            use(stream);
        }
    }

  private:
    const desktop::Pid m_pid;
    unsigned m_counter = 0;
};

}  // namespace quiravent::test
