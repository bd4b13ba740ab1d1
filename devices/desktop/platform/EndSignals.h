#pragma once

#include <functional>

namespace quiravent::desktop {

/// Has something done before a signal that asks the process to end (interrupt, termination, lost
/// terminal) does so. Signals that are ignored, or that the application or another part of the
/// process handles, are left to them, now and later; what is replaced is the end by default, and
/// a handler that is installed for one time, which is how script runtimes tidy up before they end
/// by the signal. That is what comes after. A second signal of the kind ends the process at once.
///
/// finish: called on a thread of its own, once. May be used once in a process, whose life it lasts.
void finishOnEndSignals(std::function<void()> finish);

}  // namespace quiravent::desktop
