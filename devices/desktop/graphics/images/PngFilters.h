#pragma once

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

/// Undoes a filter of the PNG standard (section 9), by its number, in place. `above` is the row
/// before, unfiltered, or zeros. Pixels have 3 or 4 bytes; a byte past those of 3 may be read.
/// False for a number that there isn't.
bool unfilterPngRow(uint8_t filter, uint8_t* row, const uint8_t* above, size_t width,
                    size_t bytesPerPixel);

}  // namespace quiravent::desktop
