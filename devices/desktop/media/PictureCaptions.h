#pragma once

#include "media/FrameQueue.h"
#include "media/SubtitleCue.h"

namespace quiravent::desktop {

/// Captions that come inside the pictures themselves. For the player's thread.
class PictureCaptions {
  public:
    virtual ~PictureCaptions() = default;

    /// The time of a picture has come: each one in order, shown or too late for it.
    virtual void follow(const VideoFrame& frame) = 0;

    /// What is to be seen on the last picture; null for nothing. Stays valid until follow().
    virtual const SubtitleCue* cue() const = 0;
};

}  // namespace quiravent::desktop
