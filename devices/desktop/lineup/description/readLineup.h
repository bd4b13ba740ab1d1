#pragma once

#include <string>

#include "lineup/description/Lineup.h"

namespace quiravent::desktop::lineup {

/// Reads a line-up's file, with everything that it leaves open given; paths are made absolute.
/// Throws DeviceError, with one line that names file, value and what is allowed, at the first thing
/// that is wrong.
Lineup readLineup(const std::string& file);

}  // namespace quiravent::desktop::lineup
