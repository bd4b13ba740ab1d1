#pragma once

#include <cstdint>

#include "common/RecordingOutput.h"

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

class TestOutput : public RecordingOutput<SeenPicture> {
  public:
    TestOutput();

    /// Waits for a picture to be the present one; false when it isn't within ten seconds.
    bool waitForNumber(int number) const;
};

}  // namespace quiravent::test
