#pragma once

#include <cstdint>
#include <vector>

#include "lineup/streams/loop.h"

namespace quiravent::desktop::lineup {

/// What a decoder takes at once: a coded picture, a frame of sound, a subtitle.
struct AccessUnit {
    Ticks pts = 0;  ///< of presentation, from the beginning of the loop
    Ticks dts = 0;  ///< of decoding; never after pts, from 0 until before the end of the loop
    bool isKey = false;
    std::vector<uint8_t> data;
};

/// In the order of decoding.
using AccessUnits = std::vector<AccessUnit>;

}  // namespace quiravent::desktop::lineup
