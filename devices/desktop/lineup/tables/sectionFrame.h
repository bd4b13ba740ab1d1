#pragma once

#include <functional>

#include "lineup/tables/ByteWriter.h"

namespace quiravent::desktop::lineup {

/// What stands in the head of a section.
struct SectionHead {
    uint8_t tableId = 0;
    uint16_t extension = 0;
    uint8_t number = 0;
    uint8_t lastNumber = 0;
};

using WriteBody = std::function<void(ByteWriter&)>;

/// A section in the long form, with its checksum (ISO/IEC 13818-1, 2.4.4).
Bytes longSection(const SectionHead& head, const WriteBody& writeBody);

/// Appends the checksum of what has been written.
Bytes withChecksum(ByteWriter writer);

}  // namespace quiravent::desktop::lineup
