#pragma once

#include <string>

#include "resources/Resource.h"

namespace quiravent::desktop {

/// The bytes of a regular file, perhaps none. The reason of a failure doesn't name the path.
Result<Bytes> readLocalFile(const std::string& path, size_t maxBytes);

}  // namespace quiravent::desktop
