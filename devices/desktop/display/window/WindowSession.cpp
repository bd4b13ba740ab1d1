#include "display/window/WindowSession.h"

#include <algorithm>

namespace quiravent::desktop {

namespace {

using std::chrono::milliseconds;

constexpr Box kNothing{0, 0, 0, 0};

/// SDL settles a change of the focus a little later, and only while it is asked for events.
constexpr milliseconds kPumpInterval{250};

/// How often SDL is asked where nothing tells when it has something.
constexpr milliseconds kBlindPumpInterval{10};

}  // namespace

WindowSession::WindowSession(const DisplayInput& input)
    : m_sdl(Sdl::instance()),
      m_window(m_sdl, Screen::kWidth, Screen::kHeight),
      m_keyboard(m_sdl, input),
      m_closeRequest(input) {}

WindowSession::~WindowSession() {
    m_keyboard.releaseAll();
    m_closeRequest.withdraw();
}

void WindowSession::handleEvents() {
    SDL_Event event{};
    while (!isLost() && m_sdl.PollEvent(&event) != 0) handle(event);
    m_closeRequest.advance(CloseRequest::Clock::now());
    if (!isLost()) showClosing();
}

void WindowSession::handle(const SDL_Event& event) {
    switch (event.type) {
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            m_keyboard.handle(event.key);
            break;
        case SDL_WINDOWEVENT:
            handleWindow(event.window);
            break;
        case SDL_QUIT:
            m_window.connection().markLost();
            break;
        default:
            break;
    }
}

void WindowSession::handleWindow(const SDL_WindowEvent& event) {
    switch (event.event) {
        case SDL_WINDOWEVENT_SHOWN:
        case SDL_WINDOWEVENT_EXPOSED:
        case SDL_WINDOWEVENT_RESTORED:
        case SDL_WINDOWEVENT_SIZE_CHANGED:
            m_window.invalidate();
            break;
        case SDL_WINDOWEVENT_CLOSE:
            m_closeRequest.ask(CloseRequest::Clock::now());
            break;
        default:
            break;
    }
}

/// Tells a viewer whose application doesn't end what to do.
void WindowSession::showClosing() {
    if (m_titleTellsOfClosing == m_closeRequest.isHeld()) return;
    m_titleTellsOfClosing = m_closeRequest.isHeld();
    m_window.setTitle(m_titleTellsOfClosing ? "Quiravent (close again to end the application)"
                                            : Window::kTitle);
}

void WindowSession::show(const Screen& screen, const Box& changed) {
    if (m_picture) {
        screen.compose(*m_picture, changed);
    } else {
        m_picture = screen.compose();
        m_window.invalidate();
    }
    m_window.show(*m_picture, changed);
}

bool WindowSession::repair() {
    if (!m_window.isStale()) return false;
    if (m_picture) {
        m_window.show(*m_picture, kNothing);
    } else {
        m_window.clear();
    }
    return true;
}

milliseconds WindowSession::timeLeft() const {
    const milliseconds pump = descriptor() < 0 ? kBlindPumpInterval : kPumpInterval;
    const auto close = m_closeRequest.timeLeft(CloseRequest::Clock::now());
    return close ? std::min(pump, std::chrono::ceil<milliseconds>(*close)) : pump;
}

}  // namespace quiravent::desktop
