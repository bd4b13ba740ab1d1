#pragma once

#include "support/Clock.h"

namespace quiravent::desktop {

/// Who asks for reports goes on to wait for them after the call, and one that comes before that
/// would lie there until the next one, or for ever where it is the last: so the first report comes
/// this long after the call at least. In microseconds.
inline constexpr int64_t kUntilListening = 40 * kMillisecond;

}  // namespace quiravent::desktop
