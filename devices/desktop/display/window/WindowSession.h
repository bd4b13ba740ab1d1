#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "display/DisplayInput.h"
#include "display/Screen.h"
#include "display/window/CloseRequest.h"
#include "display/window/Keyboard.h"
#include "display/window/Window.h"

namespace quiravent::desktop {

/// The window with the keyboard before it, on the thread that made it.
class WindowSession {
  public:
    /// input outlives the session. Throws DeviceError where there is no display.
    explicit WindowSession(const DisplayInput& input);

    /// Lets go of all keys.
    ~WindowSession();
    WindowSession(const WindowSession&) = delete;
    WindowSession& operator=(const WindowSession&) = delete;

    /// Does what the viewer and the display ask for, until they ask for nothing more.
    void handleEvents();

    /// No window is left to show anything in; the session is to be destroyed.
    bool isLost() const { return m_window.connection().isLost(); }

    /// Whether a frame is to be shown now.
    bool isVisible() const { return m_window.isVisible(); }

    /// Fetches what changed from the screen, and shows it. Throws DeviceError when that can't be
    /// done any more.
    void show(const Screen& screen, const Box& changed);

    /// Shows again what the display has lost; false where it hasn't. Throws as show() does.
    bool repair();

    /// What is readable when handleEvents() has something to do, or negative; and after which time
    /// it has, whatever that tells.
    int descriptor() const { return m_window.connection().descriptor(); }
    std::chrono::milliseconds timeLeft() const;

  private:
    void handle(const SDL_Event& event);
    void handleWindow(const SDL_WindowEvent& event);
    void showClosing();

    const Sdl& m_sdl;
    Window m_window;
    Keyboard m_keyboard;
    CloseRequest m_closeRequest;
    bool m_titleTellsOfClosing = false;
    std::shared_ptr<Surface> m_picture;  ///< what the window shows; null: black
};

}  // namespace quiravent::desktop
