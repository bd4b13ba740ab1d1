// What the functions answer that this device has nothing for: weak definitions of all functions,
// which give way to those of the other sources.

#include "porting/pl_events.h"
#include "support/Log.h"
#include "support/Refusal.h"

namespace device_log = quiravent::desktop::log;

// The list gives parameters and arguments in parentheses of their own.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define PL_FUNCTION(result, name, parameters, arguments)             \
    __attribute__((weak)) result name parameters {                   \
        device_log::info(#name " was called; this device has none"); \
        constexpr quiravent::desktop::Refusal<result> refusal;       \
        return refusal arguments;                                    \
    }
#include "porting/pl_functions.def"
// NOLINTEND(bugprone-macro-parentheses)

__attribute__((weak)) void pl_EnableDTVEvents() {
    device_log::info("events of digital television were asked for; this device has none");
}
