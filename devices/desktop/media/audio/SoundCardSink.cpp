#include "media/audio/SoundCardSink.h"

#include <limits>
#include <mutex>
#include <utility>
#include <vector>

#include "support/Clock.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

/// A card takes something each few hundredths of a second; one that doesn't for so long hangs.
constexpr int64_t kPatience = 1000000;
constexpr int64_t kLookInterval = 10000000;

/// A card that hangs would hang who closes it: it is kept to the end of the process.
void keepForGood(std::unique_ptr<SoundCard> card) {
    static std::mutex mutex;
    static auto* const cards =
        std::make_unique<std::vector<std::unique_ptr<SoundCard>>>().release();
    const std::lock_guard<std::mutex> lock(mutex);
    cards->push_back(std::move(card));
}

}  // namespace

SoundCardSink::SoundCardSink(log::Level missing, Open open)
    : m_missing(missing), m_open(std::move(open)) {}

void SoundCardSink::lookForCard(int64_t now) {
    if (m_card || now < m_nextLook) return;
    m_nextLook = now + kLookInterval;
    Result<std::unique_ptr<SoundCard>> card = m_open();
    if (card) {
        m_card = std::move(*card);
        m_told = false;
        return;
    }
    if (!m_told && log::isEnabled(m_missing))
        log::write(m_missing,
                   joined("no sound is heard, for want of a sound card: ", card.reason()));
    m_told = true;
}

int64_t SoundCardSink::nextHeardAt() {
    if (m_resting) lookForCard(clock::now());
    m_resting = false;
    return m_card ? m_card->queue().nextHeardAt(clock::now()) : m_pace.nextHeardAt();
}

void SoundCardSink::write(const float* samples, size_t frames) {
    if (m_card) {
        if (m_card->isPlugged() && m_card->queue().put(samples, frames, kPatience)) return;
        lose();
    }
    m_pace.write(samples, frames);
}

void SoundCardSink::lose() {
    m_told = true;
    if (m_card->isPlugged()) {
        log::warning("no sound is heard any more: the sound card takes none");
        m_nextLook = std::numeric_limits<int64_t>::max();
        keepForGood(std::move(m_card));
    } else {
        log::warning("no sound is heard any more: the sound card is gone");
        m_nextLook = 0;
        m_card = nullptr;
    }
}

void SoundCardSink::rest() {
    m_resting = true;
    m_pace.rest();
}

}  // namespace quiravent::desktop
