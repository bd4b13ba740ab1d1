#pragma once

#include "support/FileDescriptor.h"

namespace quiravent::desktop {

/// Wakes a thread that waits for descriptors.
class WakeSignal {
  public:
    /// Throws DeviceError where the process has no descriptor left.
    WakeSignal();

    /// What the thread waits for, which is readable from wake() to clear().
    int descriptor() const { return m_event.number(); }

    /// Any thread; never blocks.
    void wake() const;
    void clear() const;

  private:
    FileDescriptor m_event;
};

}  // namespace quiravent::desktop
