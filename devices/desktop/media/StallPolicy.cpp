#include "media/StallPolicy.h"

namespace quiravent::desktop {

StallPolicy::Change StallPolicy::observe(const Observation& seen) {
    if (m_stalled) {
        if (!suffices(seen.ahead, seen.finished)) return Change::none;
        m_stalled = false;
        return Change::recovering;
    }
    const int64_t grace = seen.begun ? kGrace : kFirstGrace;
    if (!seen.empty || seen.finished || seen.now < m_restarted + grace) return Change::none;
    m_stalled = true;
    return Change::stalled;
}

}  // namespace quiravent::desktop
