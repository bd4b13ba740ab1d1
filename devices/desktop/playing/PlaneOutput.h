#pragma once

#include <atomic>
#include <cstdint>

#include "display/Screen.h"
#include "display/VideoPlane.h"
#include "media/VideoOutput.h"

namespace quiravent::desktop {

/// A player's plane of the screen. The plane is there from the making of the output on, which
/// decides what covers what: it lies over the planes that are there, or below them.
class PlaneOutput : public VideoOutput {
  public:
    /// The screen outlives the output.
    enum class Place { top, bottom };
    explicit PlaneOutput(Screen& screen, Place place = Place::top);
    ~PlaneOutput() override;
    PlaneOutput(const PlaneOutput&) = delete;
    PlaneOutput& operator=(const PlaneOutput&) = delete;

    void show(const VideoPicture& picture) override;
    void hide() override;

    /// Position in the medium of the picture that is on the plane, in microseconds; kNoPicture
    /// where there is none. Thread-safe.
    int64_t shownPosition() const { return m_shownPosition; }
    static constexpr int64_t kNoPicture = -1;

  private:
    Screen& m_screen;
    VideoPlane m_plane;
    std::atomic<int64_t> m_shownPosition{kNoPicture};
};

}  // namespace quiravent::desktop
