#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "media/Av.h"
#include "media/FrameQueue.h"

struct AVBufferPool;

namespace quiravent::desktop {

/// Makes whole pictures of interlaced ones: of each field one, so that what moves moves as smoothly
/// as it was filmed. The missing lines come from the other field where nothing moved since the
/// picture before, and lie between their neighbours where something did. For planar YUV of 8 bits,
/// which interlaced media are coded in; other pictures stay as they are. For one thread.
class Deinterlacer {
  public:
    static bool isInterlaced(const VideoFrame& frame);

    /// The pictures of the first and the second field, in the order of time; `frame` alone where it
    /// isn't interlaced or there is no memory. Frames come in the order of time.
    std::vector<VideoFrame> split(const VideoFrame& frame);

    /// The picture of the first field alone, for the time of both; knows of no frame before.
    VideoFrame first(const VideoFrame& frame);

    /// Takes note of a frame that isn't shown, since the next one may be.
    void skip(const VideoFrame& frame) { m_before = frame; }

    /// What comes next doesn't follow what came before.
    void reset() { m_before = {}; }

  private:
    struct Free {
        void operator()(AVBufferPool* pool) const;
    };
    AvFrame allocate(const AVFrame& like);
    VideoFrame field(const VideoFrame& frame, const AVFrame* before, int parity);

    VideoFrame m_before;
    std::unique_ptr<AVBufferPool, Free> m_pool;
    size_t m_poolSize = 0;  ///< bytes of its buffers
};

}  // namespace quiravent::desktop
