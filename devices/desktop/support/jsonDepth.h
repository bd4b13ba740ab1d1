#pragma once

namespace quiravent::desktop {

/// The deepest nesting that is taken from outside: to copy deeper values, or to write them out
/// again, could exhaust the stack.
inline constexpr int kMaxJsonDepth = 32;

}  // namespace quiravent::desktop
