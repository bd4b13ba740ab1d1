#pragma once

#include <cstdint>
#include <vector>

#include "graphics/Surface.h"

namespace quiravent::desktop {

/// An opaque picture as a PNG file of 8 bits of red, green and blue. Throws std::bad_alloc without
/// the memory for it.
///
/// Without zlib: where an add-on of the application has brought that in before the device, it calls
/// into the script runtime's copy of itself, and compressing ends in a fault of memory.
std::vector<uint8_t> encodePng(const Surface& picture);

}  // namespace quiravent::desktop
