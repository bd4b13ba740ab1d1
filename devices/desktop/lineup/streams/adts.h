#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quiravent::desktop::lineup {

constexpr int kAdtsHeaderSize = 7;

/// Header of a frame of AAC low complexity at kSampleRate (ISO/IEC 13818-7, 6.2). payloadSize:
/// without the header.
std::array<uint8_t, kAdtsHeaderSize> adtsHeader(unsigned channels, size_t payloadSize);

}  // namespace quiravent::desktop::lineup
