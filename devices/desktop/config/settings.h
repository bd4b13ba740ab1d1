#pragma once

#include <vector>

#include "config/Setting.h"

namespace quiravent::desktop {

/// The one table of all settings, in the order of the file; settings of a section stand together.
const std::vector<Setting>& settings();

/// The JSON schema of the configuration file, made from the table.
nlohmann::ordered_json configurationSchema();

}  // namespace quiravent::desktop
