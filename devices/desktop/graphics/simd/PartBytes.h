#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quiravent::desktop {

// Internal linkage for the reason given in PixelMath.h.

static inline uint32_t load32(const void* bytes) {
    uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// 1 to 3 bytes, the first one lowest, without reading others. The reads overlap.
static inline uint32_t loadUpTo3Bytes(const uint8_t* bytes, size_t count) {
    const size_t middle = count / 2;
    return bytes[0] | uint32_t{bytes[middle]} << (8 * middle) |
           uint32_t{bytes[count - 1]} << (8 * (count - 1));
}

/// The same for 1 to 7 bytes.
static inline uint64_t loadUpTo7Bytes(const uint8_t* bytes, size_t count) {
    if (count < 4) return loadUpTo3Bytes(bytes, count);
    return load32(bytes) | uint64_t{load32(bytes + count - 4)} << (8 * (count - 4));
}

}  // namespace quiravent::desktop
