#include "captions/VideoCaptions.h"

namespace quiravent::desktop {

VideoCaptions::VideoCaptions(unsigned number)
    : m_number(number),
      m_lines(number <= LineCaptionChannel::kChannels ? std::make_unique<LineCaptions>(number)
                                                      : nullptr) {}

void VideoCaptions::accept(const std::vector<CaptionPair>& pairs, int64_t pts) {
    if (m_lines) m_lines->accept(pairs, pts);
    for (const CaptionPair& pair : pairs) {
        m_packets.accept(
            pair,
            [&](unsigned service, const uint8_t* bytes, size_t count) {
                if (service != m_number) return;
                m_hasService = true;
                m_windows.accept(bytes, count, pts);
            },
            [this] { m_windows.reset(); });
    }
    m_windows.advance(pts);
}

const SubtitleCue& VideoCaptions::cue() const {
    return m_hasService || !m_lines ? m_windows.cue() : m_lines->cue();
}

}  // namespace quiravent::desktop
