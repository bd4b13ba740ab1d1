#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace quiravent::desktop {

/// A value as it is shown in a message: JSON on one line, cut where it is long.
std::string shownValue(const nlohmann::json& value);

}  // namespace quiravent::desktop
