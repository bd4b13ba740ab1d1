#pragma once

#include <chrono>

namespace quiravent::desktop {

/// Wakes a thread that waits for a descriptor.
class WindowWakeup {
  public:
    /// Throws DeviceError where the process has no descriptor left.
    WindowWakeup();
    ~WindowWakeup();
    WindowWakeup(const WindowWakeup&) = delete;
    WindowWakeup& operator=(const WindowWakeup&) = delete;

    /// Ends the wait that is under way, or else the next one. Any thread; never blocks.
    void wake() const;

    /// Waits until wake() has been called, the descriptor (none where it is negative) is readable
    /// or broken, or the time is over. One thread at a time.
    void wait(int descriptor, std::chrono::milliseconds limit) const;

  private:
    int m_event;
};

}  // namespace quiravent::desktop
