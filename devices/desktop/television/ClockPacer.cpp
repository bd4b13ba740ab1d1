#include "television/ClockPacer.h"

#include <algorithm>

namespace quiravent::desktop {

namespace {

/// Bytes without a clock reference after which there is thought to be none.
constexpr uint64_t kLongestSpan = 2U << 20;
/// Further apart, in ticks, clock references don't belong together.
constexpr int64_t kLongestStep = 2 * kPcrRate;
constexpr double kTicksPerMicrosecond = kPcrRate / 1e6;

}  // namespace

void ClockPacer::begin(int64_t now) { m_time = static_cast<double>(now); }

void ClockPacer::add(const TransportPacket& packet, uint64_t place) {
    Timed timed{{}, m_isAfterRestart, place, 0};
    m_isAfterRestart = false;
    std::copy_n(packet.bytes(), timed.bytes.size(), timed.bytes.begin());
    m_untimed.push_back(timed);
    const auto clock = packet.clockReference();
    if (clock && m_clockPid == kNullPid) m_clockPid = packet.pid();
    if (clock && packet.pid() == m_clockPid) noteClock(*clock, place);
}

void ClockPacer::noteClock(int64_t clock, uint64_t place) {
    const int64_t step = m_clock ? pcrDifference(*m_clock, clock) : 0;
    if (step > 0 && step <= kLongestStep) {
        const double duration = static_cast<double>(step) / kTicksPerMicrosecond;
        m_measuredBytes += static_cast<double>(place - m_place);
        m_measuredTime += duration;
        closeAt(place, duration);
    } else {
        // What stands before the very first clock reference comes at once.
        const bool isFirst = m_measuredTime == 0 && !m_clock;
        closeAt(place, isFirst ? 0 : usualDuration(place));
    }
    m_clock = clock;
}

void ClockPacer::reach(uint64_t place) {
    if (place - m_place < kLongestSpan) return;
    closeAt(place, usualDuration(place));
    m_clock.reset();
    m_clockPid = kNullPid;
}

void ClockPacer::restart() {
    m_isAfterRestart = true;
    m_clock.reset();
}

double ClockPacer::usualDuration(uint64_t place) const {
    const double rate = m_measuredTime > 0 ? m_measuredBytes / m_measuredTime : m_usualRate;
    return static_cast<double>(place - m_place) / rate;
}

void ClockPacer::closeAt(uint64_t place, double duration) {
    const double bytes = static_cast<double>(std::max<uint64_t>(place - m_place, 1));
    for (Timed& packet : m_untimed) {
        const double part = static_cast<double>(packet.place - m_place) / bytes;
        packet.due = static_cast<int64_t>(m_time + duration * part);
        m_timed.push_back(packet);
    }
    m_untimed.clear();
    m_place = place;
    m_time += duration;
}

void ClockPacer::postpone(int64_t by) {
    for (Timed& packet : m_timed) packet.due += by;
    m_time += static_cast<double>(by);
}

}  // namespace quiravent::desktop
