#pragma once

#include <cstdint>
#include <vector>

#include "sdl/Sdl.h"

namespace quiravent::desktop {

/// Takes rows of opaque pixels, as a Surface has them, into the memory of a window, whatever
/// format the display has its pixels in.
class WindowRows {
  public:
    /// Both outlive this.
    WindowRows(const Sdl& sdl, SDL_Surface& target);

    /// Where a row of `count` pixels is to be written that begins at x, y.
    uint32_t* begin(int64_t x, int64_t y, int64_t count);

    /// That row has been written.
    void end();

  private:
    const Sdl& m_sdl;
    SDL_Surface& m_target;
    const bool m_isDirect;  ///< the display has the format of a Surface
    void* m_place = nullptr;
    int m_count = 0;
    std::vector<uint32_t> m_converted;
};

}  // namespace quiravent::desktop
