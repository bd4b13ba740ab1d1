#pragma once

#include <cstdint>
#include <optional>

namespace quiravent::desktop {

/// Relates the frames that a sound card takes to the device's clock. A card may ask for its frames
/// late, when its thread was kept waiting, but not early, and it runs a little faster or slower
/// than it says. Times in microseconds.
class CardClock {
  public:
    /// The card asks for the frame of that number.
    void asked(int64_t frame, int64_t now);

    /// When the card asks, or has asked, for a frame; none before it asked for any.
    std::optional<int64_t> timeOf(int64_t frame) const;

  private:
    std::optional<int64_t> m_origin;  ///< when it would have asked for frame 0
};

}  // namespace quiravent::desktop
