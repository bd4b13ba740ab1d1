#pragma once

#include <functional>
#include <string>

namespace quiravent::recorder {

/// How a child process ended, and what it wrote.
struct ChildEnd {
    int code = -1;   ///< its exit code, -1 when a signal ended it
    int signal = 0;  ///< the number of the signal that ended it, 0 for none
    std::string output;
    std::string errors;
};

/// Calls act() in a forked child, and ends that in good order. The child has the calling thread
/// alone: the others are to wait while it is made, since what one of them holds stays held. SIGALRM
/// ends it after so many seconds.
ChildEnd runInChild(unsigned seconds, const std::function<void()>& act);

}  // namespace quiravent::recorder
