#pragma once

#include <cstdint>
#include <vector>

#include "lineup/streams/loop.h"

namespace quiravent::desktop::lineup {

/// What a decoder takes at once: a coded picture, a frame of sound, a subtitle.
struct AccessUnit {
    Ticks pts = 0;  ///< of presentation, from the beginning of the loop
    /// Of decoding; never after pts. The first one may lie a little before the beginning of the
    /// loop; the last one is less than the loop's length after it.
    Ticks dts = 0;
    bool isKey = false;
    std::vector<uint8_t> data;
};

/// In the order of decoding.
using AccessUnits = std::vector<AccessUnit>;

}  // namespace quiravent::desktop::lineup
