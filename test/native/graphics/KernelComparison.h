#pragma once

#include <string>

#include "graphics/Kernels.h"

namespace quiravent::desktop::test {

/// Runs every row operation of both on the same random pixels, in many widths, at all alignments,
/// and with pixels around that must stay as they are. What differs first, or nothing. Needs no
/// test library, so that it can be built alone for another processor.
std::string firstDifference(const Kernels& tested, const Kernels& reference);

}  // namespace quiravent::desktop::test
