#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "television/MultiplexDescription.h"
#include "television/StreamListener.h"

namespace quiravent::desktop {

/// The last packets of a multiplex, as many as fit into its memory, and where the key pictures of
/// its video streams begin. For one thread at a time.
class PacketRing {
  public:
    /// bytes: memory to use at most; it is taken as packets come.
    explicit PacketRing(size_t bytes);

    /// Of these streams key pictures are looked for, from the next packet on.
    void setVideoStreams(const std::map<Pid, StreamCodec>& streams);

    void add(const StreamPacket& packet);

    /// Number of the packet with which the last key picture of a stream begins that has been
    /// received as a whole.
    std::optional<uint64_t> lastKeyPicture(Pid pid) const;

    /// Calls use with the packets from that number on, marked as replayed. The number is of this
    /// ring, since it was last cleared.
    void forEachFrom(uint64_t number, const std::function<void(const StreamPacket&)>& use) const;

    /// Forgets the packets, and release() the streams and the memory too.
    void clear();
    void release();

  private:
    static constexpr size_t kBlockPackets = 512;
    struct Record {
        std::array<uint8_t, TransportPacket::kSize> bytes;
        bool isDiscontinuous;
        int64_t arrival;
    };
    using Block = std::array<Record, kBlockPackets>;

    /// Where pictures of one stream that decoding can begin with start.
    struct KeyPictures {
        StreamCodec codec = StreamCodec::other;
        std::deque<uint64_t> complete;
        std::optional<uint64_t> arriving;
    };

    uint64_t oldest() const;
    void noteUnit(KeyPictures& keys, const StreamPacket& packet);

    const size_t m_maxBlocks;
    std::vector<std::unique_ptr<Block>> m_blocks;
    uint64_t m_next = 0;  ///< number of the next packet
    std::map<Pid, KeyPictures> m_keys;
};

}  // namespace quiravent::desktop
