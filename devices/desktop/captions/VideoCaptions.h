#pragma once

#include <memory>

#include "captions/LineCaptions.h"
#include "captions/ServicePackets.h"
#include "captions/WindowCaptions.h"

namespace quiravent::desktop {

/// The captions of one number inside a video stream: the service of that number of CEA-708 where
/// the video carries it, else, up to 4, that channel of CEA-608. For one thread.
class VideoCaptions {
  public:
    /// number: 1 to ServicePackets::kMaxService.
    explicit VideoCaptions(unsigned number);

    /// Takes what a picture carries; each picture in the order in which they are shown.
    void accept(const std::vector<CaptionPair>& pairs, int64_t pts);

    /// What is to be seen since the last picture.
    const SubtitleCue& cue() const;

  private:
    const unsigned m_number;
    std::unique_ptr<LineCaptions> m_lines;  ///< null: there is no channel of that number
    ServicePackets m_packets;
    WindowCaptions m_windows;
    bool m_hasService = false;
};

}  // namespace quiravent::desktop
