#include "display/window/WindowWakeup.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

WindowWakeup::WindowWakeup() : m_event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_event < 0) {
        throw DeviceError(e_pl_status_unavailable,
                          joined("no event descriptor: ", std::strerror(errno)));
    }
}

WindowWakeup::~WindowWakeup() { close(m_event); }

void WindowWakeup::wake() const {
    const uint64_t one = 1;
    // Can fail only where the event is set already.
    [[maybe_unused]] const ssize_t written = write(m_event, &one, sizeof one);
}

void WindowWakeup::wait(int descriptor, std::chrono::milliseconds limit) const {
    // poll() leaves out what is negative.
    pollfd sources[] = {{m_event, POLLIN, 0}, {descriptor, POLLIN, 0}};
    poll(sources, 2, static_cast<int>(limit.count()));
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = read(m_event, &count, sizeof count);
}

}  // namespace quiravent::desktop
