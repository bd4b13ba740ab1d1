#include "captions/ServicePackets.h"

namespace quiravent::desktop {

namespace {

constexpr uint8_t kSizeMask = 0x3F;
constexpr unsigned kSequenceShift = 6;
constexpr int kSequences = 4;
constexpr unsigned kServiceShift = 5;
constexpr uint8_t kBlockSizeMask = 0x1F;
constexpr unsigned kExtendedService = 7;

}  // namespace

size_t ServicePackets::packetSize() const {
    const size_t code = m_packet[0] & kSizeMask;
    return code == 0 ? m_packet.size() : code * 2;
}

bool ServicePackets::isAfterLoss() {
    const int sequence = m_packet[0] >> kSequenceShift;
    const bool lost = m_sequence >= 0 && sequence != (m_sequence + 1) % kSequences;
    m_sequence = sequence;
    return lost;
}

bool ServicePackets::nextBlock(size_t& at, Block& block) const {
    const size_t end = packetSize();
    if (at >= end) return false;
    block.service = m_packet[at] >> kServiceShift;
    block.size = m_packet[at] & kBlockSizeMask;
    ++at;
    if (block.service == 0) return false;
    if (block.service == kExtendedService && block.size > 0) {
        if (at >= end) return false;
        block.service = m_packet[at++] & kSizeMask;
    }
    block.begin = at;
    at += block.size;
    return at <= end;
}

}  // namespace quiravent::desktop
