#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "graphics/Surface.h"
#include "media/Decoder.h"
#include "media/Deinterlacer.h"
#include "media/MediaInput.h"
#include "media/VideoScaler.h"
#include "support/Result.h"

namespace quiravent::desktop {

/// Small pictures of one medium, read on its own and apart from playing. Thread-safe, but one
/// picture is made at a time.
class Thumbnailer {
  public:
    /// Time for a picture, opening included.
    static constexpr int64_t kTimeLimit = 2 * kSecond;

    Thumbnailer(std::string location, InputLimits limits);

    /// The key picture at or before a position, of that size. Blocks.
    Result<std::shared_ptr<Surface>> make(int64_t position, uint32_t width, uint32_t height,
                                          SurfacePool& pool);

    /// Makes what is under way, and all that follows, fail soon.
    void cancel() { m_cancelled = true; }

  private:
    MediaError open();
    MediaError decode(int64_t position, VideoFrame& frame);

    const std::string m_location;
    const InputLimits m_limits;
    std::atomic<bool> m_cancelled{false};
    std::mutex m_mutex;
    std::unique_ptr<MediaInput> m_input;
    TrackRef m_track;
    std::unique_ptr<Decoder> m_decoder;
    Deinterlacer m_deinterlacer;
    VideoScaler m_scaler;
    std::vector<VideoFrame> m_known;  ///< the last few, each for the stretch that it stands for
};

}  // namespace quiravent::desktop
