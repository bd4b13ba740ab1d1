#pragma once

#include <cstdint>

namespace quiravent::desktop {

/// When playing halts for want of data, and when it goes on. Times and durations in microseconds.
class StallPolicy {
  public:
    /// What must be there in advance to begin to play and to go on after a halt.
    static constexpr int64_t kTarget = 1000000;
    /// So long after playing began anew nothing counts as a halt; and so long, where nothing at all
    /// has come since then.
    static constexpr int64_t kGrace = 300000;
    static constexpr int64_t kFirstGrace = 1000000;

    enum class Change { none, stalled, recovering };

    struct Observation {
        int64_t now;
        int64_t ahead;  ///< read, but not yet played
        bool finished;  ///< nothing more will be read
        bool empty;     ///< neither pictures nor sound are decoded in advance
        bool begun;     ///< something has been decoded since playing began anew
    };

    /// Playing begins, or begins anew at another position. A halt lasts until enough is there for
    /// that one.
    void restart(int64_t now) { m_restarted = now; }
    bool isStalled() const { return m_stalled; }
    Change observe(const Observation& seen);

    /// Enough is there to play.
    static bool suffices(int64_t ahead, bool finished) { return finished || ahead >= kTarget; }

  private:
    bool m_stalled = false;
    int64_t m_restarted = 0;
};

}  // namespace quiravent::desktop
