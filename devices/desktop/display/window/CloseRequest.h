#pragma once

#include <chrono>
#include <optional>

#include "display/DisplayInput.h"

namespace quiravent::desktop {

/// What the close button of a window means. It presses the Exit key, as the button of a remote
/// control would, and holds it for five seconds, in which the application should end. A viewer who
/// asks again within that time insists, and the process is told to end; asking twice within one
/// second, as a double click does, is asking once. An application that is still there after the
/// five seconds has dealt with the key in its own way: it is released, and all begins anew.
class CloseRequest {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kHold{5};
    static constexpr std::chrono::seconds kDoubleClick{1};

    /// input outlives this.
    explicit CloseRequest(const DisplayInput& input) : m_input(input) {}

    /// The viewer asks.
    void ask(Clock::time_point now);

    /// Releases the key when it is time.
    void advance(Clock::time_point now);

    /// Releases the key where it is held.
    void withdraw();

    bool isHeld() const { return m_since.has_value(); }

    /// How long advance() has nothing to do; nothing where no time is running.
    std::optional<Clock::duration> timeLeft(Clock::time_point now) const;

  private:
    const DisplayInput& m_input;
    std::optional<Clock::time_point> m_since;
};

}  // namespace quiravent::desktop
