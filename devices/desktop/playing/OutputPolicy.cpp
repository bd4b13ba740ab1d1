#include "playing/OutputPolicy.h"

namespace quiravent::desktop {

void OutputPolicy::setRuntimeState(e_pl_platform_runtime_state state) {
    const bool isInFront = state == e_pl_platform_runtime_state_running ||
                           state == e_pl_platform_runtime_state_advertising;
    set(m_claimOfState, !isInFront);
}

void OutputPolicy::setLiveTelevision(bool isOn) { set(m_claimOfTelevision, isOn); }

void OutputPolicy::set(std::shared_ptr<const void>& claim, bool isTaken) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (isTaken == (claim != nullptr)) return;
    claim = isTaken ? m_players.takeOutput() : nullptr;
}

}  // namespace quiravent::desktop
