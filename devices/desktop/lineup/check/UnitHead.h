#pragma once

#include <optional>

#include "lineup/streams/loop.h"
#include "television/ByteReader.h"

namespace quiravent::desktop::lineup {

/// The time of decoding in the head of a packetised elementary stream's packet (ISO/IEC 13818-1,
/// 2.4.3.6), in ticks; that of presentation where it is the same. None when there is none.
std::optional<Ticks> decodingTime(ByteView unit);

}  // namespace quiravent::desktop::lineup
