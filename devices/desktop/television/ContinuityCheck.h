#pragma once

#include <array>
#include <cstdint>

#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// Follows the counters of packets (ISO/IEC 13818-1, 2.4.3.3). For one thread.
class ContinuityCheck {
  public:
    enum class Verdict {
        regular,
        duplicate,  ///< sent twice, which is allowed
        begin,      ///< the first of its identifier, or the counter begins anew as announced
        gap,        ///< packets before this one are missing
    };

    Verdict check(const TransportPacket& packet) {
        Counter& counter = m_counters[packet.pid()];
        const Counter before = counter;
        counter = {packet.continuity(), packet.hasPayload(), true};
        if (packet.pid() == kNullPid) return Verdict::regular;
        if (!before.isKnown || packet.announcesDiscontinuity()) return Verdict::begin;
        if (!counter.hadPayload) {
            // A packet without payload repeats the counter of the one before.
            return counter.value == before.value ? Verdict::regular : Verdict::gap;
        }
        if (counter.value == (before.value + 1) % 16) return Verdict::regular;
        const bool isRepeated = counter.value == before.value && before.hadPayload;
        return isRepeated ? Verdict::duplicate : Verdict::gap;
    }

    /// All counters begin anew, as where a file does.
    void restart() { m_counters = {}; }

  private:
    struct Counter {
        uint8_t value;
        bool hadPayload;
        bool isKnown;
    };
    std::array<Counter, kPidCount> m_counters{};
};

}  // namespace quiravent::desktop
