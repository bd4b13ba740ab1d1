#include "media/audio/CardClock.h"

#include "media/audio/AudioFormat.h"

namespace quiravent::desktop {

namespace {

/// Such a difference is no delay any more: the card halted, or filled a buffer of its own.
constexpr int64_t kHalt = 100000;
/// What a late request, and what an early one, counts for: the latter is nearer to the truth.
constexpr int64_t kLatePart = 32;
constexpr int64_t kEarlyPart = 2;

int64_t durationOf(int64_t frames) { return frames * 1000000 / kAudioRate; }

}  // namespace

void CardClock::asked(int64_t frame, int64_t now) {
    const int64_t origin = now - durationOf(frame);
    const int64_t late = m_origin ? origin - *m_origin : 0;
    if (!m_origin || late > kHalt || late < -kHalt)
        m_origin = origin;
    else
        *m_origin += late / (late > 0 ? kLatePart : kEarlyPart);
}

std::optional<int64_t> CardClock::timeOf(int64_t frame) const {
    if (!m_origin) return std::nullopt;
    return *m_origin + durationOf(frame);
}

}  // namespace quiravent::desktop
