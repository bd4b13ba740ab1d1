#pragma once

#include <cstdint>
#include <optional>

#include "live/PesAssembler.h"
#include "live/ProgramClock.h"

namespace quiravent::desktop {

/// Tells when units of a programme are to be seen or heard, as times of the device. Where its clock
/// is missing or makes no sense, by the units' own stamps and when they came. For one thread.
class StreamTiming {
  public:
    struct Times {
        int64_t pts;  ///< kNoTime where the unit tells none
        int64_t dts;
    };
    /// Nothing while it can't be said yet: the clock may still come, until `kPatience` after the
    /// first unit.
    std::optional<Times> timesOf(const PesUnit& unit);

    static constexpr int64_t kPatience = 200000;

  private:
    std::optional<ClockMapping> plausible(const PesUnit& unit, int64_t stamp) const;
    std::optional<ClockMapping> substitute(const PesUnit& unit, int64_t stamp);

    std::optional<int64_t> m_firstArrival;
    Pid m_substitutePid = kNullPid;  ///< whose stamps stand in for the clock
    ProgramClock m_substitute;
};

}  // namespace quiravent::desktop
