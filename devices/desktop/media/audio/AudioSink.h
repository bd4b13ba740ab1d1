#pragma once

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

/// Where the mixed sound goes. For one thread, which also destroys it.
class AudioSink {
  public:
    virtual ~AudioSink() = default;

    /// When, on the device's clock, the first frame of the next write() will be heard.
    virtual int64_t nextHeardAt() = 0;

    /// Takes frames (see AudioFormat.h) and waits until it wants more: this paces the mixer.
    virtual void write(const float* samples, size_t frames) = 0;

    /// Nothing will be written for a while; what was written is still heard. Doesn't wait.
    virtual void rest() = 0;
};

}  // namespace quiravent::desktop
