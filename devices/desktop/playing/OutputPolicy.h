#pragma once

#include <memory>
#include <mutex>

#include "playing/PlayerService.h"
#include "porting/pl_platform.h"

namespace quiravent::desktop {

/// Decides when something else than the application's players has the output of pictures and sound:
/// while the application is in the background or above another service's video, and while the
/// device's live television is on. Thread-safe.
class OutputPolicy {
  public:
    /// The players outlive the policy.
    explicit OutputPolicy(PlayerService& players) : m_players(players) {}

    void setRuntimeState(e_pl_platform_runtime_state state);
    void setLiveTelevision(bool isOn);

  private:
    void set(std::shared_ptr<const void>& claim, bool isTaken);

    PlayerService& m_players;
    std::mutex m_mutex;  ///< guards what follows: what is held while it applies
    std::shared_ptr<const void> m_claimOfState;
    std::shared_ptr<const void> m_claimOfTelevision;
};

}  // namespace quiravent::desktop
