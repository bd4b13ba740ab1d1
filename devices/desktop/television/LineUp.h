#pragma once

#include <optional>
#include <string>

#include "television/SelectionOptions.h"

namespace quiravent::desktop {

/// A name of the line-up and what it stands for.
struct LineUpEntry {
    std::string source;  ///< a selector; a relative path starts from the file's folder
    SelectionOptions options;
};

/// The entry of a line-up file with that name; none when it has no such entry. Throws TunerError
/// when the file can't be read or isn't as it should be.
std::optional<LineUpEntry> findInLineUp(const std::string& file, const std::string& name);

}  // namespace quiravent::desktop
