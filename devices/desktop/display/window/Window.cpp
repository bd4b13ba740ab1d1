#include "display/window/Window.h"

#include <algorithm>
#include <string>

#include "display/window/WindowRows.h"
#include "display/window/offeredDisplays.h"
#include "graphics/Scaler.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

/// Smaller than this nothing can be made out.
constexpr int kSmallestPart = 8;

DeviceError failure(const Sdl& sdl, const char* what) {
    return {e_pl_status_unavailable, joined(what, ": ", sdl.error())};
}

/// Hints that the user has in the environment take precedence.
void setHints(const Sdl& sdl) {
    // Without the choice SDL would go on to take over the console of the machine.
    sdl.SetHint(SDL_HINT_VIDEODRIVER, offeredDisplays().c_str());
    // Signals are the script runtime's.
    sdl.SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    // SDL asks to quit on the loss of the display only.
    sdl.SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");
    // SDL takes its users for games, which keep the desktop's screen saver and effects away.
    sdl.SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    sdl.SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
}

const Sdl* startVideo(const Sdl& sdl) {
    setHints(sdl);
    if (sdl.InitSubSystem(SDL_INIT_VIDEO) != 0)
        throw failure(sdl, "the display that DISPLAY or WAYLAND_DISPLAY names can't be opened");
    // Keys are wanted as keys, not for an input method to make text of.
    sdl.StopTextInput();
    // X11 takes pixels as they are; elsewhere SDL needs a texture to bring them to the display.
    const bool isX11 = std::string("x11") == sdl.GetCurrentVideoDriver();
    sdl.SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, isX11 ? "0" : "1");
    return &sdl;
}

SDL_Window* openWindow(const Sdl& sdl, int width, int height) {
    SDL_Window* const window =
        sdl.CreateWindow(Window::kTitle, SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, width,
                         height, SDL_WINDOW_RESIZABLE);
    if (window == nullptr) throw failure(sdl, "the window can't be opened");
    sdl.SetWindowMinimumSize(window, width / kSmallestPart, height / kSmallestPart);
    return window;
}

void drawScaled(WindowRows& rows, const Surface& picture, const Letterbox& letterbox,
                const Box& share, ScaleFilters& filters) {
    Scaler scaler(viewOf(picture), {letterbox.picture(), letterbox.view()}, share, filters);
    const Box& visible = scaler.visible();
    for (int64_t y = visible.top; y < visible.bottom; ++y) {
        scaler.scaleRow(y, rows.begin(visible.left, y, visible.width()));
        rows.end();
    }
}

void drawCopied(WindowRows& rows, const Surface& picture, const Letterbox& letterbox,
                const Box& share) {
    const Box& view = letterbox.view();
    for (int64_t y = share.top; y < share.bottom; ++y) {
        const uint32_t* const from =
            picture.row(static_cast<uint32_t>(y - view.top)) + (share.left - view.left);
        std::copy_n(from, share.width(), rows.begin(share.left, y, share.width()));
        rows.end();
    }
}

}  // namespace

Window::Window(const Sdl& sdl, int width, int height)
    : m_sdl(sdl),
      m_threadData(&sdl),
      m_video(startVideo(sdl)),
      m_window(openWindow(sdl, width, height), DestroyWindow{&sdl}),
      m_connection(sdl, m_window.get()) {
    clear();
}

Window::~Window() {
    if (!m_connection.isLost()) return;
    // What SDL would give back went with the connection, and asking for it might never be answered.
    [[maybe_unused]] const auto* const window = m_window.release();
    [[maybe_unused]] const auto* const video = m_video.release();
}

bool Window::isVisible() const {
    constexpr Uint32 kUnseen = SDL_WINDOW_HIDDEN | SDL_WINDOW_MINIMIZED;
    return (m_sdl.GetWindowFlags(m_window.get()) & kUnseen) == 0;
}

SDL_Surface& Window::target() {
    SDL_Surface* const surface = m_sdl.GetWindowSurface(m_window.get());
    if (surface == nullptr) throw failure(m_sdl, "the window can't be drawn in");
    return *surface;
}

void Window::clear() {
    SDL_Surface& surface = target();
    m_sdl.FillRect(&surface, nullptr, 0);
    present({0, 0, surface.w, surface.h});
    m_isStale = false;
}

void Window::show(const Surface& picture, const Box& changed) {
    SDL_Surface& surface = target();
    const Letterbox letterbox(picture.width(), picture.height(), surface.w, surface.h);
    WindowRows rows(m_sdl, surface);
    const Box share = m_isStale ? letterbox.view() : letterbox.shareOf(changed);
    if (m_isStale) m_sdl.FillRect(&surface, nullptr, 0);
    if (letterbox.isScaled()) {
        drawScaled(rows, picture, letterbox, share, m_filters);
    } else {
        drawCopied(rows, picture, letterbox, share);
    }
    present(m_isStale ? Box{0, 0, surface.w, surface.h} : share);
    m_isStale = false;
}

void Window::present(const Box& part) {
    const SDL_Rect rect{static_cast<int>(part.left), static_cast<int>(part.top),
                        static_cast<int>(part.width()), static_cast<int>(part.height())};
    if (m_sdl.UpdateWindowSurfaceRects(m_window.get(), &rect, 1) != 0) {
        throw failure(m_sdl, "the window can't be drawn in");
    }
}

void Window::setTitle(const char* title) { m_sdl.SetWindowTitle(m_window.get(), title); }

}  // namespace quiravent::desktop
