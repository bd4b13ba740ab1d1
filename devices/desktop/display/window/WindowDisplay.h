#pragma once

#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

#include "display/DisplayDriver.h"
#include "display/DisplayInput.h"
#include "display/window/WindowWakeup.h"

namespace quiravent::desktop {

class WindowSession;

/// Shows the screen in a window of the desktop, whose keyboard is the remote control. A thread of
/// its own does all that has to do with the window, so that neither the application nor the device
/// ever waits for the display. When the display goes away the device goes on without, and says so.
class WindowDisplay : public DisplayDriver {
  public:
    static constexpr const char* kName = "window";

    /// Whether the environment names a display.
    static bool isOffered();

    /// Throws DeviceError where the window can't be opened.
    explicit WindowDisplay(DisplayInput input);
    ~WindowDisplay() override;
    WindowDisplay(const WindowDisplay&) = delete;
    WindowDisplay& operator=(const WindowDisplay&) = delete;

    const char* name() const override { return kName; }
    void show(const Screen& screen, uint64_t frame, const Box& changed) override;
    void finish() override;

  private:
    /// What the window doesn't show yet.
    struct Pending {
        const Screen* screen = nullptr;  ///< null: nothing
        uint64_t frame = 0;
        Box changed{};
    };

    void run(std::promise<void> opened);
    void serve(WindowSession& session);
    bool showPending(WindowSession& session);
    Pending takePending();
    bool isEnding() const;

    const DisplayInput m_input;
    const WindowWakeup m_wakeup;
    mutable std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_ended;
    Pending m_pending;
    bool m_isEnding = false;
    bool m_hasEnded = false;
    std::thread m_thread;  ///< guarded by none: last, so that it finds all else in place
};

}  // namespace quiravent::desktop
