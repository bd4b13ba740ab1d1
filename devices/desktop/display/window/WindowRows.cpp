#include "display/window/WindowRows.h"

namespace quiravent::desktop {

namespace {

bool hasSurfaceFormat(const SDL_PixelFormat& format) {
    return format.BytesPerPixel == sizeof(uint32_t) && format.Rmask == 0xff0000 &&
           format.Gmask == 0xff00 && format.Bmask == 0xff;
}

}  // namespace

WindowRows::WindowRows(const Sdl& sdl, SDL_Surface& target)
    : m_sdl(sdl), m_target(target), m_isDirect(hasSurfaceFormat(*target.format)) {}

uint32_t* WindowRows::begin(int64_t x, int64_t y, int64_t count) {
    m_place = static_cast<uint8_t*>(m_target.pixels) + y * m_target.pitch +
              x * m_target.format->BytesPerPixel;
    m_count = static_cast<int>(count);
    if (m_isDirect) return static_cast<uint32_t*>(m_place);
    m_converted.resize(static_cast<size_t>(count));
    return m_converted.data();
}

void WindowRows::end() {
    if (m_isDirect) return;
    m_sdl.ConvertPixels(m_count, 1, SDL_PIXELFORMAT_ARGB8888, m_converted.data(),
                        m_count * static_cast<int>(sizeof(uint32_t)), m_target.format->format,
                        m_place, m_target.pitch);
}

}  // namespace quiravent::desktop
