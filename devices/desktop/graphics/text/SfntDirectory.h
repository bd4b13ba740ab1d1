#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "support/Result.h"

namespace quiravent::desktop {

/// Looks at the table directory of the first face of a TrueType, OpenType or collection file:
/// nothing when every table lies within the file and there are outlines, else what is wrong. The
/// font libraries themselves pass over tables that are cut off, and draw nothing.
std::optional<Failure> findSfntFault(const uint8_t* data, size_t size);

}  // namespace quiravent::desktop
