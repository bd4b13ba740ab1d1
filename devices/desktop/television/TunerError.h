#pragma once

#include <stdexcept>
#include <string>

#include "porting/pl_dtv.h"

namespace quiravent::desktop {

/// Why nothing is received: what() is one line for people (what is wrong, with what value, what is
/// allowed), code() what the application is told.
class TunerError : public std::runtime_error {
  public:
    TunerError(e_pl_dtv_error code, const std::string& reason)
        : std::runtime_error(reason), m_code(code) {}

    e_pl_dtv_error code() const noexcept { return m_code; }

    /// Of a failed system call: what, and the system's reason. A failure that has a code of its
    /// own gets that, any other the one given.
    static TunerError ofSystem(const std::string& what, int error, e_pl_dtv_error otherwise);

    /// What can't be understood of what an application asks for.
    [[noreturn]] static void refuse(const std::string& reason) {
        throw TunerError(e_pl_dtv_error_invalid_parameter, reason);
    }

  private:
    e_pl_dtv_error m_code;
};

}  // namespace quiravent::desktop
