#pragma once

#include "captions/VideoCaptions.h"
#include "media/PictureCaptions.h"

namespace quiravent::desktop {

/// The captions of one number, as pictures bring them. For the player's thread.
class VideoCaptionsOverlay : public PictureCaptions {
  public:
    explicit VideoCaptionsOverlay(unsigned number) : m_captions(number) {}

    void follow(const VideoFrame& frame) override {
        const AVFrameSideData* const data =
            ffmpeg().av_frame_get_side_data(frame.picture.get(), AV_FRAME_DATA_A53_CC);
        m_captions.accept(
            data == nullptr ? std::vector<CaptionPair>{} : captionPairs(data->data, data->size),
            frame.pts);
    }

    const SubtitleCue* cue() const override { return &m_captions.cue(); }

  private:
    VideoCaptions m_captions;
};

}  // namespace quiravent::desktop
