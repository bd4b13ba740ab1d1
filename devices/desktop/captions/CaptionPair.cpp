#include "captions/CaptionPair.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kBytesOfPair = 3;
constexpr uint8_t kValid = 0x04;
constexpr uint8_t kKindMask = 0x03;

}  // namespace

std::vector<CaptionPair> captionPairs(const uint8_t* data, size_t size) {
    std::vector<CaptionPair> pairs;
    for (; size >= kBytesOfPair; size -= kBytesOfPair, data += kBytesOfPair) {
        if ((data[0] & kValid) == 0) continue;
        pairs.push_back({static_cast<CaptionPair::Kind>(data[0] & kKindMask), {data[1], data[2]}});
    }
    return pairs;
}

}  // namespace quiravent::desktop
