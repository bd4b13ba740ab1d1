#include "television/PacketSync.h"

#include <algorithm>
#include <array>

namespace quiravent::desktop {

namespace {

constexpr std::array<size_t, 3> kStrides = {TransportPacket::kSize, 192, 204};

}  // namespace

void PacketSync::add(ByteView bytes, const Use& use) {
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    while (isInSync() || findPackets()) {
        usePackets(use);
        if (isInSync()) break;
    }
    // The packet before the next one is kept, in case that it has lost bytes.
    const size_t needed = isInSync() ? m_next - std::min(m_next, m_stride) : m_next;
    forget(std::min(needed, m_bytes.size()));
}

/// Uses packets up to the end of the bytes, or to where there is none.
void PacketSync::usePackets(const Use& use) {
    for (; m_next + TransportPacket::kSize <= m_bytes.size(); m_next += m_stride) {
        if (m_bytes[m_next] == TransportPacket::kSync) {
            use(TransportPacket(&m_bytes[m_next]), m_start + m_next);
            continue;
        }
        ++m_losses;
        // A wrong first byte is the fault of that packet alone when others follow where they
        // should.
        if (hasPackets(m_next + m_stride, m_stride)) continue;
        // Bytes are missing, maybe of the packet before, and then the next began within it.
        if (m_next >= m_stride) m_next -= m_stride - 1;
        m_stride = 0;
        return;
    }
}

/// Whether three packets follow from there; no, where that can't be known yet.
bool PacketSync::hasPackets(size_t at, size_t stride) const {
    const auto begins = [&](size_t place) {
        return place < m_bytes.size() && m_bytes[place] == TransportPacket::kSync;
    };
    return begins(at) && begins(at + stride) && begins(at + 2 * stride);
}

bool PacketSync::findPackets() {
    const size_t needed = 2 * kStrides.back() + 1;
    for (; m_next + needed <= m_bytes.size(); ++m_next) {
        for (const size_t stride : kStrides) {
            if (!hasPackets(m_next, stride)) continue;
            m_stride = stride;
            return true;
        }
    }
    return false;
}

void PacketSync::forget(size_t count) {
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(count));
    m_start += count;
    m_next -= count;
}

void PacketSync::restart() {
    m_bytes.clear();
    m_start = 0;
    m_next = 0;
    m_stride = 0;
}

}  // namespace quiravent::desktop
