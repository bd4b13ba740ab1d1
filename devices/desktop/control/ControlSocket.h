#pragma once

#include <sys/types.h>

#include <string>

#include "support/FileDescriptor.h"

namespace quiravent::desktop {

/// A listening Unix-domain socket with a name in the file system, for the user of this process
/// alone: of mode 0600, and clients of other users are turned away besides.
class ControlSocket {
  public:
    /// Makes the file, in place of a socket that nobody listens on any more. Throws DeviceError
    /// where that can't be done, as with one that somebody listens on.
    explicit ControlSocket(std::string path);

    /// Removes the file, unless it is another one by now.
    ~ControlSocket();
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

    int number() const { return m_socket.number(); }

    /// A client that waits, or none; below 0 with errno otherwise. A client of another user is told
    /// so and counts as none, of which errno is EPERM.
    FileDescriptor accept() const;

  private:
    void bind();
    void removeStale() const;
    [[noreturn]] void fail(const std::string& what) const;

    const std::string m_path;
    FileDescriptor m_socket;
    dev_t m_device = 0;
    ino_t m_file = 0;
};

}  // namespace quiravent::desktop
