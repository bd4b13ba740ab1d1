#pragma once

#include <string>

namespace quiravent::recorder {

/// What the calling thread is: "script" for the one that loaded this library, "device" for the
/// recorder's own, "pool" for one that bears the process's name or the name that the runtime's
/// event loop gives to its pool; else the thread's name.
std::string threadKind();

/// Makes the calling thread a device thread.
void becomeDeviceThread();

}  // namespace quiravent::recorder
