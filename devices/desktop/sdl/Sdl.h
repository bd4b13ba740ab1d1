#pragma once

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include "support/SharedLibrary.h"

struct SDL_SysWMinfo;

namespace quiravent::desktop {

/// SDL, which gives the window and the sound card. It is opened when it is wanted, not linked: it
/// brings some fifty libraries into the process, and a device without a window has to start on
/// machines without it. Each member is the function of that name with SDL_ before it; its headers
/// tell what it does.
class Sdl {
  public:
    /// Opened once, by whoever comes first; any thread. Throws DeviceError with the reason where
    /// the library is missing or too old.
    static const Sdl& instance();

    Sdl(const Sdl&) = delete;
    Sdl& operator=(const Sdl&) = delete;

  private:
    Sdl();

    const SharedLibrary m_library;

  public:
#define SDL_USED(name) decltype(&SDL_##name) const name;
#include "sdl/functions.def"
#undef SDL_USED
    /// Declared in SDL_syswm.h, which brings in all of Xlib's macros.
    SDL_bool(SDLCALL* const GetWindowWMInfo)(SDL_Window*, SDL_SysWMinfo*);

    /// What went wrong last on this thread.
    const char* error() const { return GetError(); }
};

}  // namespace quiravent::desktop
