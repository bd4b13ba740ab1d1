#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace quiravent::desktop {

/// Reads a file of JSON of at most a few MiB. what: its name in messages, as "the configuration". A
/// key that stands twice in one object, of which a parser would silently take one, is refused.
/// Throws DeviceError, with one line that names the file, when it can't be read or isn't valid.
nlohmann::json readJsonFile(const std::string& file, const std::string& what);

}  // namespace quiravent::desktop
