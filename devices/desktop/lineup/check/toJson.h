#pragma once

#include <nlohmann/json.hpp>

#include "lineup/check/Inspection.h"

namespace quiravent::desktop::lineup {

/// An inspection as the launcher prints it; see docs/lineup.md.
nlohmann::ordered_json toJson(const Inspection& inspection);

}  // namespace quiravent::desktop::lineup
