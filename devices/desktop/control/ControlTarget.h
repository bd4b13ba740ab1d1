#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "display/Screen.h"
#include "input/RemoteControl.h"
#include "platform/RuntimeState.h"
#include "platform/ServiceSelectorPipe.h"
#include "playing/LivePlayers.h"
#include "playing/PlayerService.h"
#include "support/WakeSignal.h"
#include "television/Tuner.h"

namespace quiravent::desktop {

/// What is controlled.
struct ControlTarget {
    RemoteControl& remote;
    RuntimeState& runtimeState;
    const Screen& screen;
    PlayerService& players;
    LivePlayers& livePlayers;
    Tuner& tuner;
    std::function<void()> endProcess;  ///< asks the process to end
    std::string pipe = ServiceSelectorPipe::kPath;
};

/// A client, as its requests see it.
struct ControlSession {
    const ControlTarget& target;
    std::shared_ptr<const WakeSignal> wakeServer;  ///< for work that goes on elsewhere
    std::set<int32_t> keysDown;                    ///< those that come up when the client leaves
    bool endsProcess = false;                      ///< once its answers have been sent
};

}  // namespace quiravent::desktop
