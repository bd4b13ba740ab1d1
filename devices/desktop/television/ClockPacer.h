#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// Gives the packets of a stored stream the times at which they would come over the air: between
/// two clock references at an even rate, elsewhere at the rate known by then. For one thread.
class ClockPacer {
  public:
    struct Timed {
        std::array<uint8_t, TransportPacket::kSize> bytes;
        bool isAfterRestart;
        uint64_t place;  ///< in the stream, in bytes
        int64_t due;     ///< by Clock.h
    };

    /// usualBitRate: for a stream without clock references.
    explicit ClockPacer(double usualBitRate) : m_usualRate(usualBitRate / 8e6) {}

    /// The stream begins with its place 0, at that time.
    void begin(int64_t now);

    /// The next packet, and where it stands.
    void add(const TransportPacket& packet, uint64_t place);
    /// There is nothing but packets already added up to that place.
    void reach(uint64_t place);
    /// The clock begins anew with the next packet, and that is to be marked.
    void restart();
    /// Nothing follows: all that was added gets its time.
    void finish(uint64_t place) { closeAt(place, usualDuration(place)); }

    /// Up to when the times of packets are known.
    int64_t time() const { return static_cast<int64_t>(m_time); }

    /// The packets with known times, in their order; whoever uses one takes it out.
    std::deque<Timed>& timed() { return m_timed; }
    const std::deque<Timed>& timed() const { return m_timed; }

    /// Moves all times that aren't over by so many microseconds.
    void postpone(int64_t by);

  private:
    void noteClock(int64_t clock, uint64_t place);
    void closeAt(uint64_t place, double duration);
    double usualDuration(uint64_t place) const;

    double m_usualRate;  ///< bytes per microsecond
    std::deque<Timed> m_timed;
    std::vector<Timed> m_untimed;  ///< since m_place, without their times
    bool m_isAfterRestart = false;

    uint64_t m_place = 0;  ///< up to where times are known
    double m_time = 0;     ///< the time there
    Pid m_clockPid = kNullPid;
    std::optional<int64_t> m_clock;  ///< the clock reference there

    // What clock references have told so far.
    double m_measuredBytes = 0;
    double m_measuredTime = 0;
};

}  // namespace quiravent::desktop
