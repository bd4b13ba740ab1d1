#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>

#include "media/audio/CardClock.h"

namespace quiravent::desktop {

/// Frames (see AudioFormat.h) on their way from the mixer, which waits for room, to a sound card,
/// which takes them on a thread of its own and gets silence where there are none. Thread-safe.
class SoundQueue {
  public:
    /// period: so many frames does the card take at once, and has one such portion in advance.
    explicit SoundQueue(size_t period);

    /// For the card.
    void take(float* samples, size_t frames, int64_t now);

    /// For the mixer: waits for room. False when there was none for so many microseconds; then
    /// nothing was put in.
    bool put(const float* samples, size_t frames, int64_t patience);

    /// When the first frame of the next put() will be heard.
    int64_t nextHeardAt(int64_t now) const;

  private:
    const size_t m_period;
    mutable std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_taken;
    std::deque<float> m_samples;
    int64_t m_asked = 0;  ///< frames that the card has ever got, silence included
    CardClock m_clock;
};

}  // namespace quiravent::desktop
