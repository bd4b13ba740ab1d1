#include "platform/RuntimeState.h"

#include "support/Lasting.h"

namespace quiravent::desktop {

e_pl_platform_runtime_state RuntimeState::get() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_state;
}

void RuntimeState::set(e_pl_platform_runtime_state state) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (state == m_state) return;
    m_state = state;
    m_listener(state);
    m_events.post([this, state](int64_t) {
        const pl_platform_runtime_state_callback callback = m_onChange;
        if (callback != nullptr) callback(state);
    });
}

const std::vector<std::string>& RuntimeState::names() {
    static const Lasting<std::vector<std::string>> names(
        {"paused", "running", "low_profile", "overlay", "suspended", "advertising"});
    return *names;
}

}  // namespace quiravent::desktop
