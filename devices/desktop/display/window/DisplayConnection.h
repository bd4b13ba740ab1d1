#pragma once

#include "sdl/Sdl.h"

namespace quiravent::desktop {

/// The connection that SDL keeps to the display server of a window.
///
/// On X11, a connection that breaks and a request that the server refuses both end the process
/// unless somebody objects. This object objects: the first makes isLost() true, and the second
/// becomes a warning. (Before 1.7, libX11 takes no objection to the first.) Made, used and
/// destroyed on the window's thread; one at a time.
class DisplayConnection {
  public:
    DisplayConnection(const Sdl& sdl, SDL_Window* window);
    ~DisplayConnection();
    DisplayConnection(const DisplayConnection&) = delete;
    DisplayConnection& operator=(const DisplayConnection&) = delete;

    /// What becomes readable when the server has something to tell; -1 where there is no such
    /// thing.
    int descriptor() const { return m_descriptor; }

    /// Once it is, nothing of SDL's video may be called any more.
    bool isLost() const { return m_isLost; }

    /// For a loss that SDL tells.
    void markLost() { m_isLost = true; }

  private:
    int m_descriptor = -1;
    bool m_isLost = false;
    bool m_watchesX11 = false;
};

}  // namespace quiravent::desktop
