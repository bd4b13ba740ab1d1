#pragma once

#include "captions/LineCaptionChannel.h"
#include "media/Av.h"
#include "media/SubtitleCue.h"

namespace quiravent::desktop {

/// The captions of one channel of CEA-608. For one thread.
class LineCaptions {
  public:
    explicit LineCaptions(unsigned channel);

    /// Takes what a picture carries; in the order in which pictures are shown.
    void accept(const std::vector<CaptionPair>& pairs, int64_t pts);

    /// What is to be seen since the last picture.
    const SubtitleCue& cue() const { return m_cue; }

  private:
    LineCaptionChannel m_channel;
    AvCodecContext m_decoder;  ///< null: can't be decoded
    SubtitleCue m_cue{};
};

}  // namespace quiravent::desktop
