#pragma once

#include <unistd.h>

#include <utility>

namespace quiravent::desktop {

/// A file descriptor that is closed at the end of its life; below 0: none.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : m_number(number) {}
    ~FileDescriptor() {
        if (m_number >= 0) ::close(m_number);
    }
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }

    int number() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

  private:
    int m_number = -1;
};

}  // namespace quiravent::desktop
