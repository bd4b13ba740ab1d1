#pragma once

#include <cstdint>
#include <vector>

#include "graphics/Surface.h"

namespace quiravent::desktop {

/// An opaque picture as a PNG file of 8 bits of red, green and blue. Throws DeviceError when the
/// encoder fails.
std::vector<uint8_t> encodePng(const Surface& picture);

}  // namespace quiravent::desktop
