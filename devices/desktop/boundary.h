#pragma once

#include <cstdint>
#include <exception>
#include <new>

#include "Device.h"
#include "porting/pl_status.h"
#include "support/DeviceError.h"
#include "support/Log.h"

namespace quiravent::desktop {

/// The pointers that a function can't do without.
class Required {
  public:
    template <class... Pointers>
    explicit Required(Pointers... pointers) : m_given((true && ... && (pointers != nullptr))) {}

    bool areGiven() const { return m_given; }

  private:
    bool m_given;
};

/// Body of every function of the C interface: calls body(Device&), which gives a status, and turns
/// into a status whatever goes wrong. No exception leaves. function: its name, for messages.
template <class Body>
int32_t answer(const char* function, const Required& required, Body body) noexcept {
    Device* const device = Device::running();
    if (device == nullptr) return e_pl_status_unavailable;
    if (!required.areGiven()) return e_pl_status_invalid_argument;
    try {
        const e_pl_status status = body(*device);
        if (status != e_pl_status_ok) log::debug(function, " gives status ", status);
        return status;
    } catch (const DeviceError& error) {
        log::warning(function, ": ", error.what());
        return error.status();
    } catch (const std::bad_alloc&) {
        log::error(function, ": out of memory");
        return e_pl_status_no_memory;
    } catch (const std::exception& error) {
        log::error(function, ": ", error.what());
        return e_pl_status_io_error;
    }
}

}  // namespace quiravent::desktop
