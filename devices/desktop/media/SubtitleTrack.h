#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/Av.h"
#include "media/Packet.h"

struct AVSubtitle;
struct AVSubtitleRect;

namespace quiravent::desktop {

/// A subtitle's picture: premultiplied ARGB32, row by row.
struct SubtitleBitmap {
    uint32_t x;
    uint32_t y;
    uint32_t width;
    uint32_t height;
    std::vector<uint32_t> pixels;
};

/// What is seen from `begin` until `end`.
struct SubtitleCue {
    int64_t begin;
    int64_t end;
    std::vector<std::string> lines;  ///< UTF-8, without markup
    std::vector<SubtitleBitmap> bitmaps;
    uint32_t areaWidth = 0;  ///< of the picture that the bitmaps' places refer to; 0: its own size
    uint32_t areaHeight = 0;
};

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
