#include "live/StreamTiming.h"

#include "media/Av.h"

namespace quiravent::desktop {

namespace {

/// How far from its arrival a unit can be due, by ISO/IEC 13818-1 and some allowance.
constexpr int64_t kMostLate = 2 * kSecond;
constexpr int64_t kMostEarly = 5 * kSecond;
/// Without a clock, units are due so long after they came.
constexpr int64_t kSubstituteDelay = 300 * kMillisecond;
constexpr int64_t kTicksOfStamp = kPcrRate / 90000;

}  // namespace

std::optional<ClockMapping> StreamTiming::plausible(const PesUnit& unit, int64_t stamp) const {
    // A unit that begins at the joint of two recordings may come before its clock, or end after
    // that of the next one has begun.
    for (const std::optional<ClockMapping>& mapping : {unit.atBegin, unit.atEnd}) {
        if (!mapping) continue;
        const int64_t early = mapping->timeOf(stamp) - unit.arrival;
        if (early >= -kMostLate && early <= kMostEarly) return mapping;
    }
    return std::nullopt;
}

std::optional<ClockMapping> StreamTiming::substitute(const PesUnit& unit, int64_t stamp) {
    if (m_substitutePid == kNullPid) m_substitutePid = unit.pid;
    if (m_substitutePid == unit.pid)
        m_substitute.observe(stamp * kTicksOfStamp, unit.arrival + kSubstituteDelay, false);
    return m_substitute.mapping();
}

std::optional<StreamTiming::Times> StreamTiming::timesOf(const PesUnit& unit) {
    const std::optional<int64_t> stamp = unit.dts ? unit.dts : unit.pts;
    if (!m_firstArrival) m_firstArrival = unit.arrival;
    if (!stamp) return Times{kNoTime, kNoTime};
    std::optional<ClockMapping> mapping = plausible(unit, *stamp);
    if (!mapping) {
        const bool hadTime = unit.arrival >= *m_firstArrival + kPatience;
        if (!unit.atEnd && !hadTime) return std::nullopt;
        mapping = substitute(unit, *stamp);
    }
    if (!mapping) return Times{kNoTime, kNoTime};
    const int64_t dts = mapping->timeOf(*stamp);
    return Times{unit.pts ? mapping->timeOf(*unit.pts) : dts, dts};
}

}  // namespace quiravent::desktop
