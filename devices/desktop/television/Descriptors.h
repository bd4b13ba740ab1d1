#pragma once

#include <cstdint>
#include <optional>

#include "television/ByteReader.h"

namespace quiravent::desktop {

/// The content of the first descriptor with that tag in a loop of them; none when there is none.
inline std::optional<ByteView> findDescriptor(ByteView loop, uint8_t tag) {
    ByteReader reader(loop);
    while (!reader.isAtEnd()) {
        const uint8_t found = reader.byte();
        const ByteView content = reader.takeCounted();
        if (found == tag) return content;
    }
    return std::nullopt;
}

}  // namespace quiravent::desktop
