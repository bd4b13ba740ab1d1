#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "captions/CaptionPair.h"

namespace quiravent::desktop {

/// Puts the packets of CEA-708 together and takes the blocks of services out of them.
class ServicePackets {
  public:
    static constexpr unsigned kMaxService = 63;

    /// Takes the next pair. consume(service, bytes, count) is called for each block when its packet
    /// is complete; lost() when packets before it are missing.
    template <class Consume, class Lost>
    void accept(const CaptionPair& pair, Consume consume, Lost lost) {
        if (pair.kind == CaptionPair::Kind::packetStart) m_size = 0;
        const bool isOurs = pair.kind == CaptionPair::Kind::packetStart ||
                            (pair.kind == CaptionPair::Kind::packetData && m_size > 0);
        if (!isOurs) return;
        for (const uint8_t byte : pair.bytes)
            if (m_size < m_packet.size()) m_packet[m_size++] = byte;
        if (m_size < packetSize()) return;
        if (isAfterLoss()) lost();
        Block block{};
        for (size_t at = 1; nextBlock(at, block);)
            if (block.size > 0) consume(block.service, m_packet.data() + block.begin, block.size);
        m_size = 0;
    }

  private:
    struct Block {
        unsigned service;
        size_t begin;
        size_t size;
    };
    size_t packetSize() const;
    bool isAfterLoss();
    bool nextBlock(size_t& at, Block& block) const;

    std::array<uint8_t, 128> m_packet{};
    size_t m_size = 0;
    int m_sequence = -1;  ///< of the last packet; -1: there was none
};

}  // namespace quiravent::desktop
