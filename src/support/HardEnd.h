#pragma once

#include <csignal>
#include <cstdlib>

namespace quiravent {

/// Ends the process as a read through a null pointer does. Several misuses by a script end so by
/// design: a method on an object without a native side, for one. Raising the signal instead of
/// reading keeps the end certain, whatever the optimiser makes of an invalid read.
[[noreturn]] inline void EndByNullRead() {
    std::signal(SIGSEGV, SIG_DFL);
    std::raise(SIGSEGV);
    std::abort();
}

}  // namespace quiravent
