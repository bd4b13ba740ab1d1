#include "live/ProgramClock.h"

#include <algorithm>
#include <cstdlib>

#include "media/Av.h"

namespace quiravent::desktop {

namespace {

constexpr int64_t kResync = kSecond;
constexpr int64_t kResyncAtDiscontinuity = 20 * kMillisecond;
constexpr int64_t kWindow = 5 * kSecond;
/// The mapping moves by at most one part in so many of the time that passes.
constexpr int64_t kSlowness = 200;

int64_t toMicroseconds(int64_t ticks) { return ticks / (kPcrRate / kSecond); }

}  // namespace

int64_t ClockMapping::timeOf(int64_t stamp) const {
    constexpr int64_t kTicksOfStamp = kPcrRate / 90000;
    return time + toMicroseconds(pcrDifference(reference, stamp * kTicksOfStamp));
}

void ProgramClock::observe(int64_t reference, int64_t arrival, bool discontinuous) {
    if (!m_mapping) return beginAnew(reference, arrival);
    m_ticks += pcrDifference(m_lastReference, reference);
    m_lastReference = reference;
    const int64_t delay = arrival - toMicroseconds(m_ticks);
    const int64_t error = std::abs(delay - m_delay);
    if (error > (discontinuous ? kResyncAtDiscontinuity : kResync))
        return beginAnew(reference, arrival);
    follow(delay, arrival);
    m_mapping = ClockMapping{reference, toMicroseconds(m_ticks) + m_delay};
}

void ProgramClock::beginAnew(int64_t reference, int64_t arrival) {
    m_ticks = 0;
    m_lastReference = reference;
    m_lastArrival = arrival;
    m_delay = arrival;
    m_least = {arrival, arrival};
    m_windowBegin = arrival;
    m_mapping = ClockMapping{reference, arrival};
}

void ProgramClock::follow(int64_t delay, int64_t arrival) {
    if (arrival - m_windowBegin >= kWindow) {
        m_least = {m_least[1], delay};
        m_windowBegin = arrival;
    }
    m_least[1] = std::min(m_least[1], delay);
    const int64_t step = std::max<int64_t>(arrival - m_lastArrival, 0) / kSlowness;
    const int64_t least = std::min(m_least[0], m_least[1]);
    m_delay += std::clamp(least - m_delay, -step, step);
    m_lastArrival = std::max(m_lastArrival, arrival);
}

}  // namespace quiravent::desktop
