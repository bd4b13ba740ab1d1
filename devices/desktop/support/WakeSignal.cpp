#include "support/WakeSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

WakeSignal::WakeSignal() : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_event) return;
    throw DeviceError(e_pl_status_no_memory, joined("no descriptor for waking a thread: ",
                                                    std::generic_category().message(errno)));
}

void WakeSignal::wake() const {
    const uint64_t one = 1;
    // Fails only where the signal is given already.
    [[maybe_unused]] const ssize_t written = ::write(m_event.number(), &one, sizeof one);
}

void WakeSignal::clear() const {
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = ::read(m_event.number(), &count, sizeof count);
}

}  // namespace quiravent::desktop
