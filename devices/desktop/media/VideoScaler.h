#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "graphics/Geometry.h"
#include "graphics/Surface.h"
#include "media/FrameQueue.h"

struct SwsContext;

namespace quiravent::desktop {

/// Where in an area of that size a picture lies that keeps its shape: as large as it can be, in the
/// middle. Its sides are at least 1.
Box fittedBox(uint32_t width, uint32_t height, const VideoFrame& frame);

/// Turns decoded pictures into surfaces. For one thread.
class VideoScaler {
  public:
    VideoScaler();
    ~VideoScaler();

    /// An opaque surface of that size with the picture in it and black about it; null when the
    /// picture can't be converted or there is no memory.
    std::shared_ptr<Surface> scale(const VideoFrame& frame, uint32_t width, uint32_t height,
                                   SurfacePool& pool);

  private:
    struct Free {
        void operator()(SwsContext* context) const;
    };
    bool convertI420(const AVFrame& picture, Surface& surface, const Box& box);
    bool convertOther(const AVFrame& picture, Surface& surface, const Box& box);

    std::unique_ptr<SwsContext, Free> m_context;
    std::vector<uint8_t> m_planes;
};

}  // namespace quiravent::desktop
