#pragma once

#include "lineup/description/Lineup.h"
#include "lineup/description/fields.h"

namespace quiravent::desktop::lineup {

/// The one table of all values of a line-up's file.
const Fields<Lineup>& lineupFields();

/// JSON schema of the file, made from the table.
nlohmann::ordered_json lineupSchema();

}  // namespace quiravent::desktop::lineup
