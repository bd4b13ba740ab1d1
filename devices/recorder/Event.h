#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quiravent::recorder {

/// One call of a callback that the module has registered. `callback` and its `args`:
/// "keyPress", "keyRelease": key code; "media", "ad": player, event, value; "dtv": error;
/// "runtimeState": state. With `times` it is called so often, the last argument rising by 1 from
/// call to call.
struct Event {
    std::string callback;
    std::vector<int64_t> args;
    uint32_t times = 1;
};

/// Calls the callback on this thread; gives how often one was registered (for that player).
uint32_t deliver(Event event);

}  // namespace quiravent::recorder
