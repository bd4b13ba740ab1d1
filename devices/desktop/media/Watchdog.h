#pragma once

#include <cstdint>

namespace quiravent::desktop {

/// Tells when something that is waited for hasn't got on for too long.
class Watchdog {
  public:
    explicit Watchdog(int64_t timeLimit) : m_timeLimit(timeLimit) {}

    /// waiting: whether anything is waited for; progress: any number that changes as it gets on.
    bool isOverdue(bool waiting, uint64_t progress, int64_t now) {
        if (!waiting || !m_waiting || progress != m_progress) m_since = now;
        m_waiting = waiting;
        m_progress = progress;
        return waiting && now - m_since >= m_timeLimit;
    }

    /// When it is overdue if nothing happens.
    int64_t deadline() const { return m_since + m_timeLimit; }

  private:
    const int64_t m_timeLimit;
    bool m_waiting = false;
    uint64_t m_progress = 0;
    int64_t m_since = 0;
};

}  // namespace quiravent::desktop
