#pragma once

#include <string>

#include "porting/pl_status.h"
#include "support/FileDescriptor.h"

namespace quiravent::desktop {

/// The writing end of the named pipe on which other processes talk to the application. One write
/// is one message, and two that meet in the pipe are one message, of which the second is lost.
class ServiceSelectorPipe {
  public:
    static constexpr const char* kPath = "/tmp/quiravent-serviceselector";
    static constexpr size_t kMessageBytes = 1024;

    /// Throws DeviceError when no application listens.
    explicit ServiceSelectorPipe(const std::string& path = kPath);

    /// The bytes of a message. Throws DeviceError when the two don't make one: each has to be
    /// there, without line feeds and NUL, both together at most kMessageBytes - 2 bytes long.
    static std::string message(const std::string& name, const std::string& value);

    /// Whether all that was written has been taken.
    bool isEmpty() const;

    /// At most kMessageBytes, which are written as a whole or not at all; throws DeviceError when
    /// they can't be.
    void write(const std::string& bytes) const;

  private:
    [[noreturn]] void fail(e_pl_status status, const std::string& reason) const;
    [[noreturn]] void failWithSystemError() const;

    const std::string m_path;
    const FileDescriptor m_pipe;
};

}  // namespace quiravent::desktop
