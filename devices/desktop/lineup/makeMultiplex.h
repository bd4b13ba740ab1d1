#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lineup/description/Lineup.h"

namespace quiravent::desktop::lineup {

/// The multiplex that a line-up describes, as the bytes of a file that may be sent again and again:
/// clocks, counters, pictures and sounds go round. The same line-up and media always give the same
/// bytes. file: the line-up's file, for messages. Throws DeviceError, with one line, when something
/// can't be read or coded or doesn't fit.
std::vector<uint8_t> makeMultiplex(const Lineup& lineup, const std::string& file);

}  // namespace quiravent::desktop::lineup
