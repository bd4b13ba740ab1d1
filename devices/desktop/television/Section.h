#pragma once

#include <cstdint>
#include <optional>

#include "television/ByteReader.h"

namespace quiravent::desktop {

/// A section of a table, in the long form (ISO/IEC 13818-1, 2.4.4).
struct Section {
    uint8_t tableId;
    uint16_t extension;  ///< what the table is of: a stream, a program, a service
    uint8_t version;     ///< 0 to 31
    bool isCurrent;      ///< holds already
    uint8_t number;
    uint8_t lastNumber;
    ByteView body;      ///< between the header and the checksum; as long as the bytes it is in
    uint32_t checksum;  ///< sections with the same one are the same

    /// None when the bytes are in the short form, of a wrong length, or the checksum is wrong.
    static std::optional<Section> parse(ByteView bytes);
};

}  // namespace quiravent::desktop
