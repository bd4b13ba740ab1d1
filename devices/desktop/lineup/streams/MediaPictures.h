#pragma once

#include "lineup/description/Lineup.h"
#include "lineup/streams/MediaTrack.h"
#include "lineup/streams/Pictures.h"
#include "media/VideoScaler.h"

namespace quiravent::desktop::lineup {

/// The pictures of a medium, in the rate, size and shape of a service's video: as large as they can
/// be, with black about them.
class MediaPictures : public Pictures {
  public:
    /// The track outlives the pictures. Throws DeviceError when it can't be decoded.
    MediaPictures(const Video& video, MediaTrack& track);

    AvFrame picture(int64_t number) override;

  private:
    AvFrame convert(AvFrame frame);

    const Video m_video;
    MediaTrack& m_track;
    DecodedTrack m_frames;
    AvFrame m_next;
    AvFrame m_current;  ///< converted; null before the first picture
    VideoScaler m_scaler;
    SurfacePool m_pool;
};

}  // namespace quiravent::desktop::lineup
