#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quiravent::desktop::lineup {

/// How AAC is coded, by the numbers of ISO/IEC 14496-3.
struct AacForm {
    unsigned objectType = 2;  ///< 1 to 4; 2 is low complexity
    unsigned rateIndex = 3;   ///< 0 to 12; 3 is 48 kHz
    unsigned channels = 2;    ///< channel configuration, 1 to 7
};

/// A frame of AAC with the header that a transport stream needs (ISO/IEC 13818-7, 6.2).
std::vector<uint8_t> withAdtsHeader(const AacForm& form, const uint8_t* frame, size_t size);

}  // namespace quiravent::desktop::lineup
