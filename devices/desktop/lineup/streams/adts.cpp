#include "lineup/streams/adts.h"

namespace quiravent::desktop::lineup {

std::array<uint8_t, kAdtsHeaderSize> adtsHeader(unsigned channels, size_t payloadSize) {
    constexpr unsigned kLowComplexity = 1;
    constexpr unsigned kRateIndex = 3;  // 48 kHz
    constexpr unsigned kVariableRate = 0x7FF;
    const auto size = static_cast<unsigned>(payloadSize + kAdtsHeaderSize);
    const auto byte = [](unsigned value) { return static_cast<uint8_t>(value & 0xFF); };
    return {0xFF,
            0xF1,
            byte(kLowComplexity << 6 | kRateIndex << 2 | channels >> 2),
            byte((channels & 3) << 6 | size >> 11),
            byte(size >> 3),
            byte((size & 7) << 5 | kVariableRate >> 6),
            byte((kVariableRate & 0x3F) << 2)};
}

}  // namespace quiravent::desktop::lineup
