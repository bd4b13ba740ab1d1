#include "display/window/offeredDisplays.h"

#include <cstdlib>

namespace quiravent::desktop {

namespace {

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

}  // namespace

std::string offeredDisplays() {
    const bool hasX11 = isSet("DISPLAY");
    const bool hasWayland = isSet("WAYLAND_DISPLAY");
    if (hasX11 && hasWayland) return "x11,wayland";
    if (hasX11) return "x11";
    return hasWayland ? "wayland" : "";
}

}  // namespace quiravent::desktop
