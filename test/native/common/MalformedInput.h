#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace quiravent::test {

/// Every proper beginning of the first `length` bytes, `steps` of them at most, spread evenly.
inline std::vector<std::vector<uint8_t>> truncations(const std::vector<uint8_t>& bytes,
                                                     size_t length, size_t steps = SIZE_MAX) {
    const size_t count = std::min(length, steps);
    std::vector<std::vector<uint8_t>> result;
    for (size_t i = 0; i < count; ++i)
        result.emplace_back(bytes.data(), bytes.data() + (length - 1) * (i + 1) / count);
    return result;
}

/// `count` copies with one to eight bytes changed, the same in every run; the changes lie within
/// the first `reach` bytes.
inline std::vector<std::vector<uint8_t>> byteFlips(const std::vector<uint8_t>& bytes, size_t count,
                                                   size_t reach) {
    std::mt19937 random(20260);
    std::vector<std::vector<uint8_t>> result(count, bytes);
    for (auto& copy : result)
        for (size_t changes = random() % 8 + 1; changes > 0; --changes)
            copy[random() % reach] ^= static_cast<uint8_t>(random() % 255 + 1);
    return result;
}

/// Overwrites `count` bytes with a number, the highest byte first.
inline void putBigEndian(std::vector<uint8_t>& bytes, size_t at, uint32_t value, size_t count = 4) {
    for (size_t i = 0; i < count; ++i)
        bytes[at + i] = static_cast<uint8_t>(value >> 8 * (count - 1 - i));
}

}  // namespace quiravent::test
