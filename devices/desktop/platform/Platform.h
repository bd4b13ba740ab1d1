#pragma once

#include <map>
#include <string>

#include "platform/LeavingWatch.h"
#include "platform/Properties.h"
#include "platform/RuntimeState.h"
#include "support/EventThread.h"

namespace quiravent::desktop {

/// What is around the application. Thread-safe.
class Platform {
  public:
    explicit Platform(const std::map<std::string, std::string>& properties)
        : m_properties(properties) {}

    /// Called on the script thread: as of then the application may leave, see LeavingWatch.
    s_pl_platform_properties properties() {
        m_leavingWatch.watchThisThread();
        return m_properties.list();
    }

    RuntimeState& runtimeState() { return m_runtimeState; }

    /// Nothing is told from then on.
    void stop() {
        m_leavingWatch.stop();
        m_events.stop();
    }

  private:
    Properties m_properties;
    EventThread m_events{"platform events"};
    RuntimeState m_runtimeState{m_events};
    LeavingWatch m_leavingWatch;
};

}  // namespace quiravent::desktop
