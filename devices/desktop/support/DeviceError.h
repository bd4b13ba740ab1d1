#pragma once

#include <stdexcept>
#include <string>

#include "porting/pl_status.h"

namespace quiravent::desktop {

/// An operation that could not be done: what() is one line of reason for people (what was wrong,
/// with what value, what to do), status() what the C interface answers.
class DeviceError : public std::runtime_error {
  public:
    DeviceError(e_pl_status status, const std::string& reason)
        : std::runtime_error(reason), m_status(status) {}

    e_pl_status status() const noexcept { return m_status; }

  private:
    e_pl_status m_status;
};

}  // namespace quiravent::desktop
