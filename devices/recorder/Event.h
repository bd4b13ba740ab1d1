#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quiravent::recorder {

/// One call of a callback that the module has registered. `callback` and its `args`:
/// "keyPress", "keyRelease": key code; "media", "ad": player, event, value; "dtv": error;
/// "runtimeState": state.
struct Event {
    std::string callback;
    std::vector<int64_t> args;
};

/// Calls the callback on this thread; false when none is registered (for that player).
bool deliver(const Event& event);

}  // namespace quiravent::recorder
