#pragma once

#include <string>

#include "resources/Resource.h"

namespace quiravent::desktop {

/// The body of what an HTTP server answers to a GET, perhaps empty; a status of 400 or more is a
/// failure. The reason doesn't name the URL. Blocks up to the time limit.
Result<Bytes> fetchHttp(const std::string& url, const ResourceLimits& limits);

}  // namespace quiravent::desktop
