#include "sdl/Sdl.h"

#include <type_traits>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

constexpr const char* kLibraryName = "libSDL2-2.0.so.0";

/// The first version that takes a list of video drivers.
constexpr SDL_version kOldest{2, 0, 22};

template <class Pointer>
Pointer require(const SharedLibrary& library, const char* name) {
    auto* const function = library.function<std::remove_pointer_t<Pointer>>(name);
    if (function == nullptr) {
        throw DeviceError(e_pl_status_unavailable, joined(kLibraryName, " has no ", name));
    }
    return function;
}

bool isOlder(const SDL_version& version, const SDL_version& than) {
    return SDL_VERSIONNUM(version.major, version.minor, version.patch) <
           SDL_VERSIONNUM(than.major, than.minor, than.patch);
}

}  // namespace

Sdl::Sdl()
    : m_library(kLibraryName)
#define SDL_USED(name) , name(require<decltype(name)>(m_library, "SDL_" #name))
#include "sdl/functions.def"
#undef SDL_USED
      ,
      GetWindowWMInfo(require<decltype(GetWindowWMInfo)>(m_library, "SDL_GetWindowWMInfo")) {
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
