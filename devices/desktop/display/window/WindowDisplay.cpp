#include "display/window/WindowDisplay.h"

#include <pthread.h>

#include <csignal>
#include <cstdlib>
#include <utility>

#include "display/window/WindowSession.h"
#include "display/window/offeredDisplays.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// How long the end of the process waits for a display that doesn't answer.
constexpr std::chrono::seconds kPatience{2};

/// Signals are for the threads of the script runtime. What this thread starts inherits that.
void blockSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

Box united(const Box& a, const Box& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

}  // namespace

bool WindowDisplay::isOffered() { return !offeredDisplays().empty(); }

WindowDisplay::WindowDisplay(DisplayInput input) : m_input(std::move(input)) {
    // Whoever has chosen a driver of SDL's knows what it shows on.
    if (!isOffered() && std::getenv("SDL_VIDEODRIVER") == nullptr) {
        throw DeviceError(e_pl_status_unavailable, "neither DISPLAY nor WAYLAND_DISPLAY is set");
    }
    std::promise<void> opened;
    std::future<void> outcome = opened.get_future();
    m_thread = startThread(
        "window", [this, promise = std::move(opened)]() mutable { run(std::move(promise)); });
    try {
        outcome.get();
    } catch (...) {
        m_thread.join();
        throw;
    }
}

WindowDisplay::~WindowDisplay() {
    WindowDisplay::finish();
    m_thread.join();
}

void WindowDisplay::show(const Screen& screen, uint64_t frame, const Box& changed) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const bool isFirst = m_pending.screen == nullptr;
        m_pending = {&screen, frame, isFirst ? changed : united(m_pending.changed, changed)};
    }
    m_wakeup.wake();
}

void WindowDisplay::finish() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isEnding = true;
    m_wakeup.wake();
    m_ended.wait_for(lock, kPatience, [&] { return m_hasEnded; });
}

void WindowDisplay::run(std::promise<void> opened) {
    blockSignals();
    bool isOpen = false;
    try {
        WindowSession session(m_input);
        isOpen = true;
        opened.set_value();
        serve(session);
    } catch (const std::exception& error) {
        if (isOpen) {
            log::warning("going on without the window: ", error.what());
        } else {
            opened.set_exception(std::current_exception());
        }
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hasEnded = true;
    m_ended.notify_all();
}

void WindowDisplay::serve(WindowSession& session) {
    while (!isEnding()) {
        session.handleEvents();
        // Showing may bring in events, so they are looked for once more before the wait.
        if (!session.isLost() && !showPending(session)) {
            m_wakeup.wait(session.descriptor(), session.timeLeft());
        }
        if (session.isLost()) {
            throw DeviceError(e_pl_status_unavailable, "the display is gone");
        }
    }
}

/// False where there was nothing to show.
bool WindowDisplay::showPending(WindowSession& session) {
    if (!session.isVisible()) return false;
    const bool isRepaired = session.repair();
    const Pending pending = takePending();
    if (pending.screen == nullptr) return isRepaired;
    session.show(*pending.screen, pending.changed);
    log::debug("the window shows frame ", pending.frame);
    return true;
}

WindowDisplay::Pending WindowDisplay::takePending() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_pending, {});
}

bool WindowDisplay::isEnding() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isEnding;
}

}  // namespace quiravent::desktop
