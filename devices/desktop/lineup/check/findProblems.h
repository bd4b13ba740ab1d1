#pragma once

#include <string>
#include <vector>

#include "lineup/check/Inspection.h"

namespace quiravent::desktop::lineup {

/// What keeps a file from being received, or from being sent again and again: a line for each.
std::vector<std::string> findProblems(const Inspection& inspection);

}  // namespace quiravent::desktop::lineup
