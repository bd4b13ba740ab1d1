#pragma once

#include <termios.h>

#include <array>
#include <optional>

namespace quiravent::desktop {

/// The modes of the standard streams, which outlive the process where they are shared with the one
/// that started it: taken when the device starts, put back when the process ends or begins anew by
/// a way on which the script runtime does nothing about them.
class StandardStreams {
  public:
    StandardStreams();

    /// Writes out what the C library holds back, and puts the modes back.
    void restore() const;

  private:
    struct Modes {
        int flags = -1;  ///< of fcntl(); below 0: the stream is closed
        std::optional<termios> terminal;
    };
    std::array<Modes, 3> m_modes;
};

}  // namespace quiravent::desktop
