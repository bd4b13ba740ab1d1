#include "JpegMarkers.h"

#include <algorithm>
#include <string_view>

namespace quiravent::desktop {

namespace {

constexpr uint8_t kStartOfScan = 0xDA;
constexpr uint8_t kApp14 = 0xEE;

bool namesAdobe(const uint8_t* payload, size_t size) {
    constexpr std::string_view kName = "Adobe";
    return size >= kName.size() && std::equal(kName.begin(), kName.end(), payload);
}

}  // namespace

bool hasAdobeMarker(const EncodedImage& jpeg) {
    constexpr size_t kHeaderSize = 4;  // 0xFF, the marker, and a length that counts itself
    for (size_t at = 2; at + kHeaderSize <= jpeg.size;) {
        const uint8_t* segment = jpeg.data + at;
        if (segment[0] != 0xFF || segment[1] == kStartOfScan) return false;
        if (segment[1] == 0xFF) {  // a fill byte
            ++at;
            continue;
        }
        const size_t length = static_cast<size_t>(segment[2]) << 8 | segment[3];
        if (length < 2 || length > jpeg.size - at - 2) return false;
        if (segment[1] == kApp14 && namesAdobe(segment + kHeaderSize, length - 2)) return true;
        at += 2 + length;
    }
    return false;
}

}  // namespace quiravent::desktop
