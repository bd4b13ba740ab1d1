#pragma once

#include <cstdint>

#include "media/Av.h"

namespace quiravent::desktop {

/// Of a medium that is offered in several bit rates, leaves the variant to be read that fits best
/// into the bandwidth (bits per second), or the smallest where none fits, and discards the others.
void chooseVariant(AVFormatContext& format, uint64_t bandwidth);

}  // namespace quiravent::desktop
