#pragma once

#include <cstdint>

namespace quiravent::desktop {

/// When playing halts for want of data, and when it goes on. Times and durations in microseconds.
class StallPolicy {
  public:
    /// What must be there in advance to begin to play and to go on after a halt.
    static constexpr int64_t kTarget = 1000000;
    /// So long after playing began anew nothing counts as a halt.
    static constexpr int64_t kGrace = 300000;

    enum class Change { none, stalled, recovering };

    struct Observation {
        int64_t now;
        int64_t ahead;  ///< read, but not yet played
        bool finished;  ///< nothing more will be read
        bool empty;     ///< neither pictures nor sound are decoded in advance
    };

    /// Playing begins, or begins anew at another position.
    void restart(int64_t now);
    bool isStalled() const { return m_stalled; }
    Change observe(const Observation& seen);

    /// Enough is there to play.
    static bool suffices(int64_t ahead, bool finished) { return finished || ahead >= kTarget; }

  private:
    bool m_stalled = false;
    int64_t m_restarted = 0;
};

}  // namespace quiravent::desktop
