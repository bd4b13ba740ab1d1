#pragma once

#include <functional>
#include <string>

#include "config/Configuration.h"

namespace quiravent::desktop {

/// The value of an environment variable; null when it isn't set.
using Environment = std::function<const char*(const char* name)>;

/// Reads all settings: the defaults, over them the file, over that single variables of the
/// environment (see settings.cpp). The file is the one that QUIRAVENT_CONFIG names, which has to
/// be there, or else quiravent.config.json in the working directory, which may be missing. A
/// variable that is set to nothing counts as not set. Throws DeviceError, with one line that names
/// file, key, value and what is allowed, at the first thing that is wrong.
Configuration readConfiguration(const Environment& environment);

/// quiravent in $XDG_DATA_HOME, or in ~/.local/share of the user. Throws DeviceError when there is
/// neither.
std::string defaultStorageFolder(const Environment& environment);

}  // namespace quiravent::desktop
