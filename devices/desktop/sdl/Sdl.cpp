#include "sdl/Sdl.h"

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

constexpr const char* kLibraryName = "libSDL2-2.0.so.0";

/// The first version that takes a list of video drivers.
constexpr SDL_version kOldest{2, 0, 22};

bool isOlder(const SDL_version& version, const SDL_version& than) {
    return SDL_VERSIONNUM(version.major, version.minor, version.patch) <
           SDL_VERSIONNUM(than.major, than.minor, than.patch);
}

}  // namespace

Sdl::Sdl()
    : m_library(kLibraryName)
#define SDL_USED(name) , name(m_library.require<decltype(name)>("SDL_" #name))
#include "sdl/functions.def"
#undef SDL_USED
      ,
      GetWindowWMInfo(m_library.require<decltype(GetWindowWMInfo)>("SDL_GetWindowWMInfo")) {
    SDL_version version{};
    GetVersion(&version);
    if (isOlder(version, kOldest)) {
        throw DeviceError(
            e_pl_status_unavailable,
            joined("SDL is ", +version.major, '.', +version.minor, '.', +version.patch,
                   ", but 2.0.22 or later is needed; install a newer libsdl2-2.0-0"));
    }
}

const Sdl& Sdl::instance() {
    static const Sdl sdl;
    return sdl;
}

}  // namespace quiravent::desktop
