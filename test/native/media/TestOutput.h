#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "media/VideoOutput.h"

namespace quiravent::test {

/// A picture that reached the screen.
struct SeenPicture {
    int number;  ///< that the picture carries; see make-media.sh
    int64_t at;  ///< microseconds of the device's clock
    int64_t position;
    uint32_t width;
    uint32_t height;
};

/// The number in the blocks along the upper edge of the video, which fills the surface.
int pictureNumber(const desktop::Surface& surface);

/// How many pixels in the lower quarter of the surface are white: those of a subtitle.
int whitePixels(const desktop::Surface& surface);

/// Remembers all that is shown. Thread-safe.
class TestOutput : public desktop::VideoOutput {
  public:
    void show(const desktop::VideoPicture& picture) override;
    void hide() override;

    std::vector<SeenPicture> seen() const;
    std::shared_ptr<const desktop::Surface> current() const;  ///< null while nothing is shown
    void forget();

    /// Waits for a picture to be the present one; false when it isn't within ten seconds.
    bool waitForNumber(int number);
    /// Waits for so many pictures since the last forget().
    bool waitForCount(size_t count);

  private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<SeenPicture> m_seen;
    std::shared_ptr<const desktop::Surface> m_current;
};

}  // namespace quiravent::test
