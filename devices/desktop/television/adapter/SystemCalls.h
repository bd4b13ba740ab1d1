#pragma once

#include "support/FileDescriptor.h"

namespace quiravent::desktop {

/// How devices of the kernel are spoken to.
class SystemCalls {
  public:
    virtual ~SystemCalls() = default;

    /// As open(); errno tells why there is none.
    virtual FileDescriptor open(const char* path, int flags) = 0;
    /// As ioctl(), called again when a signal has come in between.
    virtual int control(int descriptor, unsigned long request, void* argument) = 0;
};

/// Those of this machine.
SystemCalls& systemCalls();

}  // namespace quiravent::desktop
