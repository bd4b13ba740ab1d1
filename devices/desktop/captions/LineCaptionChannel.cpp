#include "captions/LineCaptionChannel.h"

namespace quiravent::desktop {

namespace {

constexpr uint8_t kDataMask = 0x7F;
constexpr uint8_t kParityBit = 0x80;
constexpr uint8_t kChannelBit = 0x08;
constexpr uint8_t kFirstControlCode = 0x10;
constexpr uint8_t kFirstCharacter = 0x20;

uint8_t withParity(uint8_t data) {
    return (__builtin_popcount(data) & 1) != 0 ? data : static_cast<uint8_t>(data | kParityBit);
}

}  // namespace

LineCaptionChannel::LineCaptionChannel(unsigned number)
    : m_field(number <= 2 ? CaptionPair::Kind::field1 : CaptionPair::Kind::field2),
      m_channelBit(number % 2 == 0 ? kChannelBit : 0) {}

std::optional<CaptionPair> LineCaptionChannel::pick(const CaptionPair& pair) {
    if (pair.kind != m_field) return std::nullopt;
    CaptionPair picked{CaptionPair::Kind::field1, pair.bytes};
    const uint8_t first = pair.bytes[0] & kDataMask;
    if (first == 0) return picked;
    if (first < kFirstControlCode) {
        // Extended data services lie between the captions, and end with the next control code.
        m_isOurs = false;
    } else if (first < kFirstCharacter) {
        m_isOurs = (first & kChannelBit) == m_channelBit;
        picked.bytes[0] = withParity(first & static_cast<uint8_t>(~kChannelBit));
    }
    return m_isOurs ? std::optional(picked) : std::nullopt;
}

}  // namespace quiravent::desktop
