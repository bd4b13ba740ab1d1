#pragma once

#include <cstdint>
#include <optional>

#include "porting/pl_dtv.h"
#include "support/Clock.h"

namespace quiravent::desktop {

/// Decides what there is to report of a selection: when it is locked, when the signal is lost, and
/// what stands in the way. Times are those of Clock.h. For one thread.
class SignalMonitor {
  public:
    /// So long a signal may be silent, or without tables.
    static constexpr int64_t kPatience = kSecond;

    /// The waiting for packets begins, maybe anew.
    void begin(int64_t now);

    void onPacket(int64_t now);

    /// What is wanted is there; only after packets.
    void onLock() { m_outcome = e_pl_dtv_error_none; }

    /// What is wanted isn't in what comes. A later lock ends that.
    void onMissing(e_pl_dtv_error code) { m_outcome = code; }

    /// Nothing can be received, until the waiting begins anew.
    void onFailure(e_pl_dtv_error code) {
        m_outcome = code;
        m_packets = 0;
    }

    /// What the time has brought about: the outcome, when it is another than at the last call.
    std::optional<e_pl_dtv_error> check(int64_t now);

    /// When check() is to be called at the latest; INT64_MAX: after another event.
    int64_t nextCheck() const;

    bool isPresent() const { return m_packets != 0; }
    bool isLocked() const { return m_outcome == e_pl_dtv_error_none; }

  private:
    int64_t m_lastPacket = 0;   ///< or when the waiting for one began
    int64_t m_firstPacket = 0;  ///< since the signal came
    uint64_t m_packets = 0;     ///< since then; 0: there is no signal
    std::optional<e_pl_dtv_error> m_outcome;
    std::optional<e_pl_dtv_error> m_told;
};

}  // namespace quiravent::desktop
