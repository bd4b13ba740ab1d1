#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/Av.h"
#include "media/Packet.h"
#include "media/SubtitleCue.h"

struct AVSubtitle;
struct AVSubtitleRect;

namespace quiravent::desktop {

/// The lines of a text in Advanced SubStation's event syntax, without its markup.
std::vector<std::string> subtitleLines(const std::string& event);

/// Decodes one subtitle track. For one thread.
class SubtitleTrack {
  public:
    explicit SubtitleTrack(const Track& track);

    void decode(const Packet& packet);

    /// Null when nothing is seen at that position.
    const SubtitleCue* at(int64_t position) const;

  private:
    void add(const AVSubtitle& subtitle, const Packet& packet);
    void addRect(const AVSubtitleRect& rect, SubtitleCue& cue);

    AvCodecContext m_context;         ///< null: can't be decoded
    std::vector<SubtitleCue> m_cues;  ///< in the order of the packets
};

}  // namespace quiravent::desktop
