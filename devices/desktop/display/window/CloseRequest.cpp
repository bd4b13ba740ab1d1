#include "display/window/CloseRequest.h"

#include <algorithm>

namespace quiravent::desktop {

void CloseRequest::ask(Clock::time_point now) {
    advance(now);
    if (!m_since) {
        m_since = now;
        m_input.exitKey(true);
    } else if (now - *m_since >= kDoubleClick) {
        m_input.terminate();
    }
}

void CloseRequest::advance(Clock::time_point now) {
    if (m_since && now - *m_since >= kHold) withdraw();
}

void CloseRequest::withdraw() {
    if (!m_since) return;
    m_since.reset();
    m_input.exitKey(false);
}

std::optional<CloseRequest::Clock::duration> CloseRequest::timeLeft(Clock::time_point now) const {
    if (!m_since) return std::nullopt;
    return std::max(*m_since + kHold - now, Clock::duration::zero());
}

}  // namespace quiravent::desktop
