#include "display/window/DisplayConnection.h"

#include <SDL_syswm.h>
#include <wayland-client-core.h>

#include "support/Log.h"

namespace quiravent::desktop {

namespace {

/// The X11 library that SDL uses.
struct XLibrary {
    const SharedLibrary library = SharedLibrary::loaded("libX11.so.6");
    decltype(&XConnectionNumber) const connectionNumber =
        library.function<decltype(XConnectionNumber)>("XConnectionNumber");
    decltype(&XSetErrorHandler) const setErrorHandler =
        library.function<decltype(XSetErrorHandler)>("XSetErrorHandler");
    decltype(&XSetIOErrorHandler) const setLossHandler =
        library.function<decltype(XSetIOErrorHandler)>("XSetIOErrorHandler");
    decltype(&XSetIOErrorExitHandler) const setLossExitHandler =
        library.function<decltype(XSetIOErrorExitHandler)>("XSetIOErrorExitHandler");

    bool isComplete() const {
        return connectionNumber != nullptr && setErrorHandler != nullptr &&
               setLossHandler != nullptr && setLossExitHandler != nullptr;
    }
};

const XLibrary& xLibrary() {
    static const XLibrary library;
    return library;
}

/// Xlib's handlers are for all connections of the process; what isn't SDL's goes to those that
/// were set before.
struct Watch {
    Display* display;
    XErrorHandler previousErrorHandler;
    XIOErrorHandler previousLossHandler;
};
Watch s_watch{};

int onRefusal(Display* display, XErrorEvent* error) {
    if (display != s_watch.display) return s_watch.previousErrorHandler(display, error);
    log::warning("the X server refused request ", +error->request_code, '.', +error->minor_code,
                 " with error ", +error->error_code);
    return 0;
}

/// Comes before the handler below, and is where Xlib would write about the loss.
int onLoss(Display* display) {
    return display != s_watch.display ? s_watch.previousLossHandler(display) : 0;
}

void markLost(Display* /*display*/, void* connection) {
    static_cast<DisplayConnection*>(connection)->markLost();
}

void watch(Display* display, DisplayConnection* connection) {
    s_watch.display = display;
    s_watch.previousErrorHandler = xLibrary().setErrorHandler(onRefusal);
    s_watch.previousLossHandler = xLibrary().setLossHandler(onLoss);
    xLibrary().setLossExitHandler(display, markLost, connection);
}

int waylandDescriptor(wl_display* display) {
    const auto library = SharedLibrary::loaded("libwayland-client.so.0");
    auto* const descriptor = library.function<decltype(wl_display_get_fd)>("wl_display_get_fd");
    return descriptor != nullptr ? descriptor(display) : -1;
}

}  // namespace

DisplayConnection::DisplayConnection(const Sdl& sdl, SDL_Window* window) {
    SDL_SysWMinfo info{};
    SDL_VERSION(&info.version);
    if (sdl.GetWindowWMInfo(window, &info) == SDL_FALSE) return;
    if (info.subsystem == SDL_SYSWM_X11 && xLibrary().isComplete()) {
        watch(info.info.x11.display, this);
        m_watchesX11 = true;
        m_descriptor = xLibrary().connectionNumber(info.info.x11.display);
    } else if (info.subsystem == SDL_SYSWM_WAYLAND) {
        m_descriptor = waylandDescriptor(info.info.wl.display);
    }
}

DisplayConnection::~DisplayConnection() {
    if (!m_watchesX11) return;
    if (m_isLost) {
        // SDL keeps what is left of the connection, and it must still not end the process.
        xLibrary().setLossExitHandler(
            s_watch.display, [](Display*, void*) {}, nullptr);
        return;
    }
    xLibrary().setErrorHandler(s_watch.previousErrorHandler);
    xLibrary().setLossHandler(s_watch.previousLossHandler);
    xLibrary().setLossExitHandler(s_watch.display, nullptr, nullptr);
    s_watch = {};
}

}  // namespace quiravent::desktop
