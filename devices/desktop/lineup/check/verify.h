#pragma once

#include "lineup/check/Inspection.h"
#include "lineup/description/Lineup.h"

namespace quiravent::desktop::lineup {

/// Makes sure that a multiplex reads back as what it was made from, and that nothing is wrong with
/// it. Throws DeviceError with the first difference.
void verify(const Lineup& lineup, const Inspection& inspection);

}  // namespace quiravent::desktop::lineup
