#pragma once

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A window of another program, as a window manager and a viewer see it.
class XWindow {
  public:
    using Pixels = std::vector<uint32_t>;

    /// The first window of that title.
    explicit XWindow(const std::string& title)
        : m_display(XOpenDisplay(nullptr), XCloseDisplay),
          m_root(DefaultRootWindow(m_display.get())),
          m_window(find(title)) {
        XSynchronize(m_display.get(), True);  // each request has been served when it returns
    }

    bool exists() const { return m_window != 0; }

    /// All pixels of the window, row by row, in the format of the display.
    Pixels pixels() const {
        XWindowAttributes size{};
        XGetWindowAttributes(m_display.get(), m_window, &size);
        if (size.map_state != IsViewable) return {};
        const auto width = static_cast<unsigned>(size.width);
        const auto height = static_cast<unsigned>(size.height);
        const std::unique_ptr<XImage, void (*)(XImage*)> image(
            XGetImage(m_display.get(), m_window, 0, 0, width, height, AllPlanes, ZPixmap),
            [](XImage* picture) { XDestroyImage(picture); });
        Pixels result;
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) {
                result.push_back(static_cast<uint32_t>(XGetPixel(image.get(), x, y)));
            }
        }
        return result;
    }

    /// Asks the server until the window shows these pixels; false when it never does.
    bool waitFor(const Pixels& expected) const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < deadline) {
            if (pixels() == expected) return true;
        }
        return false;
    }

    /// Moves the window to the corner, so that all of it can be seen, and resizes it.
    void resize(unsigned width, unsigned height) const {
        XMoveResizeWindow(m_display.get(), m_window, 0, 0, width, height);
    }

    /// Takes away what the window shows, as another window over it would have done.
    void wipe() const { XClearArea(m_display.get(), m_window, 0, 0, 0, 0, True); }
    void hide() const { XUnmapWindow(m_display.get(), m_window); }
    void unhide() const { XMapWindow(m_display.get(), m_window); }
    void takeFocusAway() const {
        XSetInputFocus(m_display.get(), m_root, RevertToNone, CurrentTime);
    }

    /// What the close button does.
    void askToClose() const {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = m_window;
        event.xclient.message_type = XInternAtom(m_display.get(), "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] =
            static_cast<long>(XInternAtom(m_display.get(), "WM_DELETE_WINDOW", False));
        XSendEvent(m_display.get(), m_window, False, NoEventMask, &event);
    }

    /// Ends the connection that the window belongs to.
    void killConnection() const { XKillClient(m_display.get(), m_window); }

  private:
    Window find(const std::string& title) const {
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned count = 0;
        XQueryTree(m_display.get(), m_root, &root, &parent, &children, &count);
        const std::unique_ptr<Window, int (*)(void*)> owner(children, XFree);
        const Window* const found = std::find_if(
            children, children + count, [&](Window window) { return titleOf(window) == title; });
        return found == children + count ? 0 : *found;
    }

    std::string titleOf(Window window) const {
        char* text = nullptr;
        if (XFetchName(m_display.get(), window, &text) == 0) return {};
        const std::unique_ptr<char, int (*)(void*)> owner(text, XFree);
        return text;
    }

    std::unique_ptr<Display, int (*)(Display*)> m_display;
    Window m_root;
    Window m_window;
};
