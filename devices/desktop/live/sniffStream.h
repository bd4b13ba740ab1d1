#pragma once

#include <cstddef>
#include <cstdint>

#include "television/MultiplexDescription.h"

namespace quiravent::desktop {

/// What a stream carries that no table tells of, by the beginning of a unit of it: H.264, HEVC,
/// MPEG-1/2 video, AAC with ADTS headers or in LATM, MPEG audio, AC-3, Enhanced AC-3,
/// DVB subtitles. `other` when that can't be said.
StreamCodec sniffStream(const uint8_t* data, size_t size);

}  // namespace quiravent::desktop
