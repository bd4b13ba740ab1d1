#pragma once

#include "media/audio/AudioSink.h"

namespace quiravent::desktop {

/// Drops the sound, in exactly the time that it would take to be heard.
class NullSink : public AudioSink {
  public:
    int64_t nextHeardAt() override;
    void write(const float* samples, size_t frames) override;
    void rest() override;

  private:
    /// Frames are taken so much before they are "heard".
    static constexpr int64_t kLatency = 20000;
    /// A thread that comes so late doesn't catch up.
    static constexpr int64_t kMaxDelay = 100000;

    bool m_resting = true;
    int64_t m_next = 0;
    int64_t m_frames = 0;  ///< written since m_origin
    int64_t m_origin = 0;
};

}  // namespace quiravent::desktop
