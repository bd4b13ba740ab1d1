#include "television/adapter/SystemCalls.h"

#include <fcntl.h>
#include <sys/ioctl.h>

#include <cerrno>

namespace quiravent::desktop {

namespace {

class RealCalls : public SystemCalls {
  public:
    FileDescriptor open(const char* path, int flags) override {
        return FileDescriptor(::open(path, flags | O_CLOEXEC));
    }

    int control(int descriptor, unsigned long request, void* argument) override {
        int result = 0;
        do {
            result = ::ioctl(descriptor, request, argument);
        } while (result < 0 && errno == EINTR);
        return result;
    }
};

}  // namespace

SystemCalls& systemCalls() {
    static RealCalls calls;
    return calls;
}

}  // namespace quiravent::desktop
