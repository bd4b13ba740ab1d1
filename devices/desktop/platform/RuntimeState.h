#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "porting/pl_platform.h"
#include "support/EventThread.h"

namespace quiravent::desktop {

/// The runtime state of the application. It starts as running, and every state may follow every
/// other. Each change is told once, in order, by a thread of the platform's events; asking for the
/// present state is no change. Thread-safe.
class RuntimeState {
  public:
    explicit RuntimeState(EventThread& events) : m_events(events) {}

    e_pl_platform_runtime_state get() const;
    void set(e_pl_platform_runtime_state state);

    /// Who else is told, by the thread that asks, before the application; must not call back. To be
    /// set before the first change.
    using Listener = std::function<void(e_pl_platform_runtime_state)>;
    void setListener(Listener listener) { m_listener = std::move(listener); }

    void setCallback(pl_platform_runtime_state_callback callback) { m_onChange = callback; }

    /// The six names, under their states.
    static const std::vector<std::string>& names();

  private:
    EventThread& m_events;
    Listener m_listener = [](e_pl_platform_runtime_state) {};
    std::atomic<pl_platform_runtime_state_callback> m_onChange{nullptr};
    mutable std::mutex m_mutex;  ///< guards the state, and the order in which changes are posted
    e_pl_platform_runtime_state m_state = e_pl_platform_runtime_state_running;
};

}  // namespace quiravent::desktop
