#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "support/Clock.h"

namespace quiravent::desktop {

/// Wakes one thread that waits for something to have happened, or for a time.
class Wakeup {
  public:
    static constexpr int64_t kNever = INT64_MAX;

    void signal() {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_signalled = true;
        }
        m_condition.notify_one();
    }

    /// Returns at the given time at the latest, and at once when there was a signal since the last
    /// call.
    void waitUntil(int64_t time) {
        std::unique_lock<std::mutex> lock(m_mutex);
        const auto signalled = [this] { return m_signalled; };
        if (time == kNever)
            m_condition.wait(lock, signalled);
        else
            m_condition.wait_until(lock, clock::timePoint(time), signalled);
        m_signalled = false;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_signalled = false;
};

}  // namespace quiravent::desktop
