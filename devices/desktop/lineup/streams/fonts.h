#pragma once

#include <memory>
#include <string>

#include "graphics/text/Font.h"

namespace quiravent::desktop::lineup {

/// The line-up's font at a height. Throws DeviceError when it can't be read.
std::shared_ptr<Font> openFont(const std::string& file, uint32_t height);

}  // namespace quiravent::desktop::lineup
