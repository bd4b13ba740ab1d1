#pragma once

#include <memory>

#include "display/window/DisplayConnection.h"
#include "display/window/Letterbox.h"
#include "graphics/ScaleFilters.h"
#include "graphics/Surface.h"
#include "sdl/Sdl.h"

namespace quiravent::desktop {

/// A window that shows a picture: pixel for pixel while it has the picture's size, and scaled, in
/// the picture's aspect, when it was resized. All calls on the thread that made it, which also is
/// the one to take SDL's events. One at a time.
class Window {
  public:
    static constexpr const char* kTitle = "Quiravent";

    /// Opens the window, black, for a picture of that size. Throws DeviceError where there is no
    /// display.
    Window(const Sdl& sdl, int width, int height);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Nobody sees it while it is minimised, say.
    bool isVisible() const;

    /// What the display holds of the window is lost, or isn't of its size.
    void invalidate() { m_isStale = true; }
    bool isStale() const { return m_isStale; }

    /// Makes all of it black.
    void clear();

    /// Shows an opaque picture of the window's first size, of which only `changed` differs from
    /// what the window shows; all of it where the window is stale. Throws DeviceError when the
    /// window can't be drawn in.
    void show(const Surface& picture, const Box& changed);

    void setTitle(const char* title);

    DisplayConnection& connection() { return m_connection; }
    const DisplayConnection& connection() const { return m_connection; }

  private:
    /// What SDL keeps for each thread that calls it, such as the text of its last error.
    struct FreeThreadData {
        void operator()(const Sdl* sdl) const { sdl->TLSCleanup(); }
    };
    struct QuitVideo {
        void operator()(const Sdl* sdl) const { sdl->QuitSubSystem(SDL_INIT_VIDEO); }
    };
    struct DestroyWindow {
        const Sdl* sdl;
        void operator()(SDL_Window* window) const { sdl->DestroyWindow(window); }
    };

    SDL_Surface& target();
    void present(const Box& part);

    const Sdl& m_sdl;
    std::unique_ptr<const Sdl, FreeThreadData> m_threadData;
    std::unique_ptr<const Sdl, QuitVideo> m_video;
    std::unique_ptr<SDL_Window, DestroyWindow> m_window;
    DisplayConnection m_connection;
    ScaleFilters m_filters;
    bool m_isStale = false;
};

}  // namespace quiravent::desktop
