#pragma once

#include <memory>
#include <vector>

#include "media/Av.h"

struct SwrContext;

namespace quiravent::desktop {

/// Turns decoded sound of any layout, rate and format into the device's (see AudioFormat.h).
class Resampler {
  public:
    ~Resampler();
    Resampler();

    /// What comes out for a frame; the frames may change their format in between. Empty when a
    /// frame can't be converted.
    std::vector<float> convert(const AVFrame& frame);

    /// Forgets what is left of earlier frames.
    void reset() { m_context.reset(); }

  private:
    struct Free {
        void operator()(SwrContext* context) const;
    };
    bool prepare(const AVFrame& frame);

    std::unique_ptr<SwrContext, Free> m_context;
    int m_rate = 0;
    int m_format = -1;
    int m_channels = 0;
};

}  // namespace quiravent::desktop
