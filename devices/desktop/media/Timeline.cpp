#include "media/Timeline.h"

#include <algorithm>
#include <cstdlib>

#include "media/Av.h"

namespace quiravent::desktop {

namespace {

/// Times that are so far off are wrong.
constexpr int64_t kJump = 5 * kSecond;

}  // namespace

void Timeline::restart(int64_t position) {
    m_next = std::max<int64_t>(position, 0);
    m_shift = 0;
    m_restarted = true;
}

bool Timeline::isPossible(int64_t time) const {
    if (m_duration > 0 && (time < -kJump || time > m_duration + kJump)) return false;
    // Where a seek lands is known only when it has.
    return !m_mayJump || m_restarted || std::abs(time - m_next) <= kJump;
}

int64_t Timeline::longestFrom(int64_t pts) const {
    // In transport streams a damaged frame rate is all that tells of long pictures.
    if (m_mayJump) return kJump / 2;
    return m_duration > 0 ? std::max<int64_t>(m_duration - pts, 0) + kSecond : INT64_MAX / 4;
}

void Timeline::place(int64_t& pts, int64_t& dts, int64_t& duration) {
    if (!m_mayJump) m_shift = 0;
    int64_t stated = dts != kNoTime ? dts : pts;
    // No sum of such times overflows.
    if (stated == kNoTime || std::abs(stated) > INT64_MAX / 4) stated = m_next - m_shift;
    if (!isPossible(stated + m_shift)) m_shift = m_next - stated;
    m_restarted = false;
    // Pictures are decoded only so much before they are seen.
    if (pts == kNoTime || std::abs(pts / 2 - stated / 2) > kJump / 2) pts = stated;
    pts += m_shift;
    dts = stated + m_shift;
    duration = std::clamp<int64_t>(duration, 0, longestFrom(pts));
    m_next = pts + duration;
}

}  // namespace quiravent::desktop
