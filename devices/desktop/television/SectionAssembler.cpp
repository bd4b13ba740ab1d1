#include "television/SectionAssembler.h"

namespace quiravent::desktop {

namespace {

constexpr uint8_t kStuffing = 0xFF;
constexpr size_t kPrefix = 3;  ///< bytes that tell how long the section is
constexpr size_t kLongest = 4096;

size_t wholeSize(const std::vector<uint8_t>& bytes) {
    return kPrefix + (size_t{bytes[1]} << 8 & 0x0F00U) + bytes[2];
}

bool isLongForm(const std::vector<uint8_t>& bytes) { return (bytes[1] & 0x80) != 0; }

}  // namespace

void SectionAssembler::add(const TransportPacket& packet, bool isDiscontinuous, const Use& use) {
    if (isDiscontinuous) {
        drop();
        m_isInSync = false;
    }
    ByteReader payload(ByteView(packet.payload(), packet.payloadSize()));
    if (payload.isAtEnd()) return;
    if (!packet.startsUnit()) {
        if (m_isInSync) append(payload.take(payload.left()), use);
        return;
    }
    // The pointer leads over the rest of the section before.
    const ByteView rest = payload.takeCounted();
    if (m_isInSync) append(rest, use);
    drop();
    m_isInSync = true;
    append(payload.take(payload.left()), use);
}

void SectionAssembler::append(ByteView bytes, const Use& use) {
    while (!bytes.empty()) {
        if (m_bytes.empty() && bytes.front() == kStuffing) {
            // Nothing but stuffing follows, to the end of the packet.
            m_isInSync = false;
            return;
        }
        const size_t wanted = m_bytes.size() < kPrefix ? kPrefix : wholeSize(m_bytes);
        const ByteView part = bytes.substr(0, wanted - m_bytes.size());
        m_bytes.insert(m_bytes.end(), part.begin(), part.end());
        bytes.remove_prefix(part.size());
        if (m_bytes.size() < kPrefix || m_bytes.size() < wholeSize(m_bytes)) continue;
        if (const auto section = Section::parse(ByteView(m_bytes.data(), m_bytes.size()))) {
            use(*section);
        } else if (isLongForm(m_bytes) || m_bytes.size() > kLongest) {
            ++m_faulty;
        }
        drop();
    }
}

}  // namespace quiravent::desktop
