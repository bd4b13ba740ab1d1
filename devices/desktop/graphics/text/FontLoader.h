#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "graphics/text/Font.h"

namespace quiravent::desktop {

/// Reads (see readResource) and opens a font; the reason of a failure names the location.
Result<std::shared_ptr<Font>> loadFont(const std::string& location, uint32_t pixelHeight,
                                       const ResourceLimits& limits = {});

}  // namespace quiravent::desktop
