#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

namespace detail {

constexpr std::array<uint32_t, 256> makeCrc32Table() {
    constexpr uint32_t kPolynomial = 0x04C11DB7;
    std::array<uint32_t, 256> table{};
    for (uint32_t byte = 0; byte < table.size(); ++byte) {
        uint32_t value = byte << 24;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value << 1) ^ ((value & 0x80000000U) != 0 ? kPolynomial : 0);
        }
        table[byte] = value;
    }
    return table;
}

}  // namespace detail

/// CRC-32/MPEG-2 as ISO/IEC 13818-1 (annex A) defines it for sections. Over a whole section with
/// its CRC it is 0.
inline uint32_t crc32(const uint8_t* data, size_t size) {
    static constexpr std::array<uint32_t, 256> kTable = detail::makeCrc32Table();
    uint32_t crc = 0xFFFFFFFF;
    for (size_t i = 0; i < size; ++i) crc = (crc << 8) ^ kTable[(crc >> 24) ^ data[i]];
    return crc;
}

}  // namespace quiravent::desktop
