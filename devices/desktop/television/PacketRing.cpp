#include "television/PacketRing.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "television/KeyPicture.h"

namespace quiravent::desktop {

PacketRing::PacketRing(size_t bytes) : m_maxBlocks(std::max<size_t>(bytes / sizeof(Block), 1)) {}

void PacketRing::setVideoStreams(const std::map<Pid, StreamCodec>& streams) {
    std::map<Pid, KeyPictures> keys;
    for (const auto& [pid, codec] : streams) {
        const auto known = m_keys.find(pid);
        const bool isSame = known != m_keys.end() && known->second.codec == codec;
        keys[pid] = isSame ? std::move(known->second) : KeyPictures{codec, {}, {}};
    }
    m_keys.swap(keys);
}

void PacketRing::add(const StreamPacket& packet) {
    const auto keys = m_keys.find(packet.packet.pid());
    if (keys != m_keys.end()) noteUnit(keys->second, packet);
    const size_t block = m_next / kBlockPackets % m_maxBlocks;
    if (block == m_blocks.size()) m_blocks.push_back(std::make_unique<Block>());
    Record& record = (*m_blocks[block])[m_next % kBlockPackets];
    std::memcpy(record.bytes.data(), packet.packet.bytes(), record.bytes.size());
    record.isDiscontinuous = packet.isDiscontinuous;
    record.arrival = packet.arrival;
    ++m_next;
}

void PacketRing::noteUnit(KeyPictures& keys, const StreamPacket& packet) {
    if (packet.isDiscontinuous) keys.arriving.reset();
    if (!packet.packet.startsUnit()) return;
    // The beginning of the next one shows that the one before is whole.
    if (keys.arriving) keys.complete.push_back(*keys.arriving);
    keys.arriving.reset();
    while (!keys.complete.empty() && keys.complete.front() < oldest()) keys.complete.pop_front();
    if (startsKeyPicture(packet.packet, keys.codec)) keys.arriving = m_next;
}

/// Number of the oldest packet that is kept, once the next one has been added.
uint64_t PacketRing::oldest() const {
    // A block that is written to anew has none of its old packets any more, as far as is asked for.
    const uint64_t block = m_next / kBlockPackets;
    return block < m_maxBlocks ? 0 : (block - m_maxBlocks + 1) * kBlockPackets;
}

std::optional<uint64_t> PacketRing::lastKeyPicture(Pid pid) const {
    const auto keys = m_keys.find(pid);
    if (keys == m_keys.end() || keys->second.complete.empty()) return std::nullopt;
    const uint64_t number = keys->second.complete.back();
    return number >= oldest() ? std::optional(number) : std::nullopt;
}

void PacketRing::forEachFrom(uint64_t number,
                             const std::function<void(const StreamPacket&)>& use) const {
    for (uint64_t at = std::max(number, oldest()); at < m_next; ++at) {
        const Record& record = (*m_blocks[at / kBlockPackets % m_maxBlocks])[at % kBlockPackets];
        use({TransportPacket(record.bytes.data()), record.arrival, record.isDiscontinuous, true});
    }
}

void PacketRing::clear() {
    m_next = 0;
    for (auto& [pid, keys] : m_keys) {
        keys.complete.clear();
        keys.arriving.reset();
    }
}

void PacketRing::release() {
    clear();
    m_keys.clear();
    m_blocks.clear();
}

}  // namespace quiravent::desktop
