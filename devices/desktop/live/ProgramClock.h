#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// That a clock reference is due at a time of the device (Clock.h, microseconds).
struct ClockMapping {
    int64_t reference;  ///< ticks of kPcrRate
    int64_t time;

    /// When a time stamp of 90 kHz and 33 bits is due.
    int64_t timeOf(int64_t stamp) const;
};

/// Recovers a programme's clock from references that come early or late by what the network did to
/// them: what came fastest within the last seconds counts, and the mapping follows it slowly, so
/// that neither jitter nor a sender whose clock is a little fast is seen or heard. A reference that
/// is off by more than a second, or by less where a discontinuity is told, begins anew.
class ProgramClock {
  public:
    void observe(int64_t reference, int64_t arrival, bool discontinuous);

    /// Nothing before the first reference.
    const std::optional<ClockMapping>& mapping() const { return m_mapping; }

  private:
    void beginAnew(int64_t reference, int64_t arrival);
    void follow(int64_t delay, int64_t arrival);

    std::optional<ClockMapping> m_mapping;
    int64_t m_ticks = 0;  ///< since the beginning
    int64_t m_lastReference = 0;
    int64_t m_lastArrival = 0;
    int64_t m_delay = 0;               ///< arrival less reference that the mapping stands for
    std::array<int64_t, 2> m_least{};  ///< delay in the window before and in the present one
    int64_t m_windowBegin = 0;
};

}  // namespace quiravent::desktop
