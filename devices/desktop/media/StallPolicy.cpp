#include "media/StallPolicy.h"

namespace quiravent::desktop {

void StallPolicy::restart(int64_t now) {
    m_stalled = false;
    m_restarted = now;
}

StallPolicy::Change StallPolicy::observe(const Observation& seen) {
    if (m_stalled) {
        if (!suffices(seen.ahead, seen.finished)) return Change::none;
        m_stalled = false;
        return Change::recovering;
    }
    if (!seen.empty || seen.finished || seen.now < m_restarted + kGrace) return Change::none;
    m_stalled = true;
    return Change::stalled;
}

}  // namespace quiravent::desktop
