#include "lineup/streams/adts.h"

#include <algorithm>
#include <array>

namespace quiravent::desktop::lineup {

std::vector<uint8_t> withAdtsHeader(const AacForm& form, const uint8_t* frame, size_t size) {
    constexpr unsigned kVariableRate = 0x7FF;
    constexpr size_t kHeaderSize = 7;
    const auto whole = static_cast<unsigned>(size + kHeaderSize);
    const auto byte = [](unsigned value) { return static_cast<uint8_t>(value & 0xFF); };
    const std::array<uint8_t, kHeaderSize> header{
        0xFF,
        0xF1,
        byte((form.objectType - 1) << 6 | form.rateIndex << 2 | form.channels >> 2),
        byte((form.channels & 3) << 6 | whole >> 11),
        byte(whole >> 3),
        byte((whole & 7) << 5 | kVariableRate >> 6),
        byte((kVariableRate & 0x3F) << 2)};
    std::vector<uint8_t> bytes(whole);
    std::copy_n(frame, size, std::copy(header.begin(), header.end(), bytes.begin()));
    return bytes;
}

}  // namespace quiravent::desktop::lineup
