#pragma once

#include <cstdint>

namespace quiravent::desktop {

/// The times of one track as its packets are read, freed of what damage and the joins of transport
/// streams do to them: times that lie beyond the medium, and jumps. Microseconds.
class Timeline {
  public:
    /// duration: of the medium, 0 where unknown. mayJump: the format allows that times begin anew
    /// in the midst of the medium; in others a jump is a gap, which stays.
    Timeline(int64_t duration, bool mayJump) : m_duration(duration), m_mayJump(mayJump) {}

    /// The source went to about this position.
    void restart(int64_t position);

    /// Replaces the times of the next packet, pts and dts of which may be kNoTime, by such as make
    /// sense.
    void place(int64_t& pts, int64_t& dts, int64_t& duration);

  private:
    bool isPossible(int64_t time) const;
    int64_t longestFrom(int64_t pts) const;

    int64_t m_duration;
    bool m_mayJump;
    int64_t m_next = 0;   ///< where the last packet ended
    int64_t m_shift = 0;  ///< added to the stated times
    bool m_restarted = false;
};

}  // namespace quiravent::desktop
