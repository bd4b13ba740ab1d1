#pragma once

#include <string>

namespace quiravent::desktop {

/// The displays that the environment names, as SDL's list of video drivers: "x11", "wayland",
/// "x11,wayland" or nothing.
std::string offeredDisplays();

}  // namespace quiravent::desktop
