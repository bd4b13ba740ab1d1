#pragma once

#include "lineup/description/Lineup.h"
#include "lineup/description/fields.h"

namespace quiravent::desktop::lineup {

/// Gives what the file leaves open (identifiers, packet identifiers, colours, tones), and checks
/// what only shows between values. Throws DeviceError, with one line, at the first thing that is
/// wrong. file: the place of the whole.
void completeLineup(Lineup& lineup, const Place& file);

}  // namespace quiravent::desktop::lineup
