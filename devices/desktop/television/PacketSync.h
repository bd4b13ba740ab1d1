#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "television/ByteReader.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// Finds the packets in a stream of bytes: of 188 bytes, of 192 with a time stamp before each, or
/// of 204 with the checks of a demodulator behind. Three packets in a row are needed to begin with,
/// and after bytes that don't fit. For one thread.
class PacketSync {
  public:
    /// offset: of the packet's first byte from the beginning of the stream.
    using Use = std::function<void(const TransportPacket& packet, uint64_t offset)>;

    /// Takes the next bytes, and calls use for each packet that is there as a whole.
    void add(ByteView bytes, const Use& use);

    /// The stream begins anew; what is left of it is forgotten, not how often it failed.
    void restart();

    bool isInSync() const { return m_stride != 0; }
    /// How many bytes have been taken since the beginning.
    uint64_t taken() const { return m_start + m_bytes.size(); }
    /// How often packets stopped following one another.
    uint64_t losses() const { return m_losses; }

  private:
    void usePackets(const Use& use);
    bool findPackets();
    bool hasPackets(size_t at, size_t stride) const;
    void forget(size_t count);

    std::vector<uint8_t> m_bytes;  ///< those that may still be needed
    uint64_t m_start = 0;          ///< offset of the first of them
    size_t m_next = 0;             ///< among them: where the next packet begins, or is looked for
    size_t m_stride = 0;           ///< from packet to packet; 0: not known
    uint64_t m_losses = 0;
};

}  // namespace quiravent::desktop
