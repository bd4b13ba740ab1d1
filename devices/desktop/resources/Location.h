#pragma once

#include <string>

#include "support/Result.h"

namespace quiravent::desktop {

/// Where a resource lies.
struct Location {
    enum class Kind { file, http };

    Kind kind;
    std::string target;  ///< the path of a file, or the whole URL
};

/// Tells paths from URLs: a text that begins with a scheme and "://", or with "file:/", is a URL,
/// anything else a path. Fails for an empty text, a NUL, an unknown scheme, a `file:` URL of
/// another host or with a broken percent-encoding.
Result<Location> parseLocation(const std::string& text);

/// The text in single quotes, fit for a line of an error message: control characters replaced,
/// cut when it is very long.
std::string inQuotes(const std::string& text);

}  // namespace quiravent::desktop
